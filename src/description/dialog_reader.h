#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "description/dialog_model.h"
#include "description/vocabulary.h"
#include "support/debug_log.h"

class ColourTheme;
class PXML;

// Reads the dialogs of the description into the model.
class DialogReader {
public:
    DialogReader(const PXML& description, const ColourTheme& theme, DialogModel& model, DebugLog debugLog)
        : description_(description), theme_(theme), model_(model), debugLog_(debugLog) {}

    // Fills the model anew from the element Dialogs, or UninstallDialogs in a session that uninstalls, whose
    // dialogs have no fields. False when the element is missing or a dialog with sub-dialogs lacks a part of
    // them; the model holds the dialogs before it then.
    bool readDialogs(bool useUninstallDialogs);

    // Each takes a record with its node set and reads the direct children of that node; other kinds of
    // elements are passed over. readButtons returns the number of buttons read; readTaskList
    // is false when there is no list.
    void readFields(DialogDesc& dialog);
    void readElements(DialogDesc& dialog);
    int readButtons(DialogDesc& dialog);
    void readTriggers(DialogDesc& dialog);
    bool readTaskList(DialogDesc& dialog);

private:
    int readPage(DialogDesc& dialog);
    std::optional<int> readSubDialogs(DialogDesc& dialog);
    void readCommon(DialogDesc& dialog);
    bool readElement(std::int32_t node, std::int32_t kind, DialogElementDesc& outElement);
    bool readField(std::int32_t node, const DialogDesc& dialog, DialogFieldDesc& outField);
    bool readButton(std::int32_t node, DialogButtonDesc& outButton);
    void readTrigger(std::int32_t node, DialogDesc& dialog);
    std::int32_t readTriggerType(std::int32_t node, const DialogDesc& dialog);
    static std::int32_t sideOnly(std::int32_t align);

    // Empty where there is none.
    std::string_view textOf(std::int32_t node) const;
    std::string_view attribute(std::int32_t node, vocabulary::AttributeName name) const;
    bool has(std::int32_t node, vocabulary::AttributeName name) const;
    bool hasPosition(std::int32_t node) const;
    std::int32_t numberOr(std::int32_t node, vocabulary::AttributeName name, std::int32_t fallback) const;
    std::int32_t colour(std::int32_t node, vocabulary::AttributeName name) const;

    const PXML& description_;
    const ColourTheme& theme_;
    DialogModel& model_;
    DebugLog debugLog_;
    bool uninstalling_ = false;
};
