#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "contracts/nested_session.h"
#include "description/answers_file.h"
#include "engine/report.h"
#include "engine/uninstallation.h"
#include "package/cabinet.h"
#include "platform/platform.h"
#include "session/session_model.h"
#include "support/debug_log.h"
#include "support/p_stream.h"

class InstallerUI;
class SystemOperations;

// The part of a session that takes a product away without pages of its own: it reads the product from the
// action log and undoes the log.
class NestedUninstallation : public NestedSession {
public:
    // All of them are borrowed and outlive this object; the front end may be null.
    NestedUninstallation(const platform::Platform& machine, SystemOperations& system, InstallerUI* ui,
                         ErrorList& errors, DebugLog debugLog);

    void load(const std::string& logPath) override;
    std::string productName() override;
    ProductRecords records() override;
    void setVariable(std::string_view name, std::string_view value) override;
    bool uninstall(const std::function<void(int percent)>& onProgress) override;

private:
    void openLog(const std::string& path);
    void sayWhy(const std::string& path, int status);
    std::string readDescription();
    void readProduct(std::string_view description);
    void readVariables();

    platform::FileSystem& files_;
    InstallerUI* ui_;
    ErrorList& errors_;
    DebugLog debugLog_;
    Cabinet cabinet_;  // empty: a log needs none
    AnswersFile answers_;
    SessionModel model_;
    std::unique_ptr<PStream> log_;  // all of it: one that can't be read isn't undone by half
    Uninstallation uninstallation_;
};
