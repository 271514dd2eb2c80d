#pragma once

#include <string_view>

#include "description/colour_theme.h"
#include "description/dialog_model.h"
#include "description/file_sets.h"
#include "description/product_description.h"
#include "description/pxml.h"
#include "description/variables.h"
#include "engine/action_log_variables.h"
#include "engine/engine_parts.h"
#include "support/debug_log.h"

class Cabinet;
class SystemOperations;

// The description of a session and everything that is read from it.
class SessionModel {
public:
    // All of it is borrowed and outlives this object.
    SessionModel(const platform::Platform& machine, SystemOperations& system, AnswersFile& answers,
                 DebugLog debugLog);
    SessionModel(const SessionModel&) = delete;
    SessionModel& operator=(const SessionModel&) = delete;

    // Reads the text of the description. No text is refused: what can't be read is missing later.
    void parse(std::string_view text);
    // Reads product, files, theme, dialogs and control variables; the cabinet knows the sizes of the files.
    // Only a graphical front end needs the theme. False when the product or the dialogs can't be read,
    // which is logged.
    bool read(const Cabinet& cabinet, bool isUninstallation);

    // As the front end reports it, which a variable says as well; false at first.
    void setGraphical(bool isGraphical) { isGraphical_ = isGraphical ? 1 : 0; }
    bool isGraphical() const { return isGraphical_ != 0; }

    // The same description, as the engine sees it.
    ProductModel view();

    PXML description;

private:
    std::int32_t isGraphical_ = 0;
    ActionLogVariables logVariables_;

public:
    Variables variables;
    ProductDescription product;
    FileSets fileSets;
    ColourTheme theme;
    DialogModel dialogs;

private:
    bool readDialogs(bool isUninstallation);
    void readControlVariables();

    DebugLog debugLog_;
};
