#include "description/dialog_reader.h"

#include "base/text_functions.h"
#include "description/colour_theme.h"
#include "description/dialog_buttons.h"
#include "description/dialog_words.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "support/debug_log.h"

namespace {

constexpr std::int32_t kDialogWidth = 760;
constexpr std::int32_t kDialogHeight = 520;

// The two characters backslash and n stand for a line end.
std::string withLineEnds(std::string_view text) {
    std::string out(text);
    for (std::size_t at = out.find("\\n"); at != std::string::npos; at = out.find("\\n", at + 2)) {
        out[at] = '\r';
        out[at + 1] = '\n';
    }
    return out;
}

}  // namespace

bool DialogReader::readDialogs(bool useUninstallDialogs) {
    uninstalling_ = useUninstallDialogs;
    model_.clear();
    const vocabulary::ElementName forInstalling = "Dialogs";
    const vocabulary::ElementName forUninstalling = "UninstallDialogs";
    const std::int32_t section =
        vocabulary::findElement(description_, useUninstallDialogs ? forUninstalling : forInstalling);
    if (section < 0) {
        return false;
    }
    // The count is never set back: only dialogs before the first button of all get the furniture.
    int buttons = 0;
    for (const std::int32_t node : description_.childrenOf(section)) {
        DialogDesc dialog;
        dialog.node = node;
        buttons += readPage(dialog);
        if (dialog.has(kDialogHasSubDialogs)) {
            const std::optional<int> more = readSubDialogs(dialog);
            if (!more) {
                return false;
            }
            buttons += *more;
        }
        if (buttons == 0) {
            DialogButtons::addStandardFurniture(dialog, WizardWords(description_));
        }
        model_.add(std::move(dialog));
    }
    return true;
}

// Returns the number of buttons.
int DialogReader::readPage(DialogDesc& dialog) {
    readCommon(dialog);
    readFields(dialog);
    readElements(dialog);
    const int buttons = readButtons(dialog);
    readTriggers(dialog);
    return buttons;
}

void DialogReader::readCommon(DialogDesc& dialog) {
    const std::int32_t node = dialog.node;
    dialog.name.assign(description_.getName(node));
    dialog.width = numberOr(node, "w", kDialogWidth);
    dialog.height = numberOr(node, "h", kDialogHeight);
    dialog.backgroundColour = colour(node, "BkgColour");
    dialog.foregroundColour = colour(node, "FgColour");
    dialog.special = DialogWords::special(attribute(node, "Special"));
    dialog.conditionText.assign(attribute(node, "Condition"));
    vocabulary::forEachWord(attribute(node, "Retain"),
                            [&](std::string_view name) { dialog.retain.emplace_back(name); });
}

// Sub-dialogs come in the order of the tasks that name them; what no task names isn't read. Returns the
// number of buttons, or nothing where a part is missing.
std::optional<int> DialogReader::readSubDialogs(DialogDesc& dialog) {
    if (!readTaskList(dialog)) {
        return std::nullopt;
    }
    const std::int32_t section = vocabulary::findChild(description_, dialog.node, "SubDialogs");
    if (section < 0) {
        debugLog_.line("ERROR: Could NOT find <SubDialogs> tag! (parent: " + std::string(dialog.name.view()) +
                       ")");
        return std::nullopt;
    }
    int buttons = 0;
    for (const TaskDesc& task : dialog.tasks) {
        DialogDesc sub;
        sub.node = description_.findChild(section, task.name.view());
        if (sub.node >= 0) {
            buttons += readPage(sub);
            dialog.subDialogs.push_back(std::move(sub));
        }
    }
    return buttons;
}

bool DialogReader::readTaskList(DialogDesc& dialog) {
    const std::int32_t section = vocabulary::findChild(description_, dialog.node, "TaskList");
    if (section < 0) {
        debugLog_.line("ERROR: Could NOT find <TaskList> tag! (parent: " + std::string(dialog.name.view()) +
                       ")");
        return false;
    }
    for (const std::int32_t node : description_.childrenOf(section)) {
        TaskDesc task;
        task.name.assign(description_.getName(node));
        task.currentLabel.assign(attribute(node, "CurrentLabel"));
        task.finishLabel.assign(attribute(node, "FinishLabel"));
        task.unreachedLabel.assign(attribute(node, "UnreachedLabel"));
        task.showCondition.assign(attribute(node, "ShowCondition"));
        task.enableCondition.assign(attribute(node, "EnableCondition"));
        dialog.tasks.push_back(task);
    }
    return true;
}

void DialogReader::readElements(DialogDesc& dialog) {
    for (const std::int32_t node : description_.childrenOf(dialog.node)) {
        const std::optional<std::int32_t> kind = DialogWords::elementKind(description_.getName(node));
        DialogElementDesc element;
        if (kind && readElement(node, *kind, element)) {
            dialog.elements.push_back(std::move(element));
        }
    }
}

bool DialogReader::readElement(std::int32_t node, std::int32_t kind, DialogElementDesc& outElement) {
    if (!hasPosition(node)) {
        return false;
    }
    outElement.name.assign(attribute(node, "Name"));
    outElement.kind = kind;
    outElement.x = numberOr(node, "x", 0);
    outElement.y = numberOr(node, "y", 0);
    outElement.width = numberOr(node, "w", 0);
    outElement.height = numberOr(node, "h", 0);
    outElement.condition.assign(attribute(node, "Condition"));
    outElement.details.assign(attribute(node, "Details"));
    outElement.format.assign(attribute(node, "Format"));
    outElement.text = withLineEnds(textOf(node));
    outElement.expandsVariables = kind == kElementText && has(node, "ExpandVars");
    outElement.horizontalAlign = DialogWords::horizontalAlign(attribute(node, "HAlign"));
    outElement.verticalAlign = DialogWords::verticalAlign(attribute(node, "VAlign"));
    outElement.backgroundColour = colour(node, "BkgColour");
    outElement.foregroundColour = colour(node, "FgColour");
    return true;
}

void DialogReader::readFields(DialogDesc& dialog) {
    if (uninstalling_) {
        return;
    }
    for (const std::int32_t node : description_.childrenOf(dialog.node)) {
        DialogFieldDesc field;
        if (vocabulary::isCalled(description_, node, "Field") && readField(node, dialog, field)) {
            dialog.fields.push_back(field);
        }
    }
}

bool DialogReader::readField(std::int32_t node, const DialogDesc& dialog, DialogFieldDesc& outField) {
    const std::string_view word = attribute(node, "Type");
    const std::optional<std::int32_t> type = DialogWords::fieldType(word);
    if (!type) {
        debugLog_.line("WARNING: Unrecognized field type = " + std::string(word) +
                       " (Parent dlg name: " + std::string(dialog.name.view()) + ")");
        return false;
    }
    outField.type = *type;
    outField.label.assign(attribute(node, "Label"));
    outField.variable.assign(textOf(node));
    outField.x = numberOr(node, "x", -1);
    outField.y = numberOr(node, "y", -1);
    outField.width = numberOr(node, "w", -1);
    outField.height = numberOr(node, "h", -1);
    outField.content.assign(attribute(node, "Content"));
    outField.condition.assign(attribute(node, "Condition"));
    outField.description.assign(attribute(node, "Description"));
    outField.enable.assign(attribute(node, "Enable"));
    outField.validationVariable.assign(attribute(node, "ValidationVariable"));
    outField.horizontalAlign = DialogWords::horizontalAlign(attribute(node, "HAlign"));
    outField.verticalAlign = DialogWords::verticalAlign(attribute(node, "VAlign"));
    outField.labelColour = colour(node, "LabelColour");
    outField.inputBackground = colour(node, "InputBkgColour");
    outField.inputForeground = colour(node, "InputFgColour");
    outField.buttonBackground = colour(node, "ButtonBkgColour");
    outField.buttonForeground = colour(node, "ButtonFgColour");
    outField.invalidBackground = colour(node, "InvalidBkgColour");
    outField.invalidForeground = colour(node, "InvalidFgColour");
    return true;
}

int DialogReader::readButtons(DialogDesc& dialog) {
    int count = 0;
    for (const std::int32_t node : description_.childrenOf(dialog.node)) {
        DialogButtonDesc button;
        if (vocabulary::isCalled(description_, node, "Button") && readButton(node, button)) {
            dialog.buttons.push_back(button);
            ++count;
        }
    }
    return count;
}

bool DialogReader::readButton(std::int32_t node, DialogButtonDesc& outButton) {
    const std::string_view label = textOf(node);
    if (label.empty() || !hasPosition(node)) {
        return false;
    }
    outButton.label.assign(label);
    outButton.condition.assign(attribute(node, "Condition"));
    outButton.enableCondition.assign(attribute(node, "EnableCondition"));
    outButton.action.assign(attribute(node, "Action"));
    outButton.shift = numberOr(node, "DialogShift", 0);
    outButton.flags = (outButton.shift != 0 ? kButtonHasShift : 0U) |
                      (has(node, "Action") ? kButtonHasAction : 0U) |
                      (numberOr(node, "LinkStyle", 0) == 1 ? kButtonLinkStyle : 0U) |
                      (numberOr(node, "Disableable", 0) == 1 ? kButtonDisableable : 0U) |
                      (numberOr(node, "Default", 0) == 1 ? kButtonDefault : 0U);
    outButton.x = numberOr(node, "x", 0);
    outButton.y = numberOr(node, "y", 0);
    outButton.width = numberOr(node, "w", outButton.width);
    outButton.height = numberOr(node, "h", outButton.height);
    outButton.horizontalAlign = sideOnly(DialogWords::horizontalAlign(attribute(node, "HAlign")));
    outButton.verticalAlign = sideOnly(DialogWords::verticalAlign(attribute(node, "VAlign")));
    outButton.backgroundColour = colour(node, "BkgColour");
    outButton.foregroundColour = colour(node, "FgColour");
    outButton.activeBackground = colour(node, "ActiveBkgColour");
    outButton.activeForeground = colour(node, "ActiveFgColour");
    DialogButtons::preset(outButton, attribute(node, "Name"));
    return true;
}

void DialogReader::readTriggers(DialogDesc& dialog) {
    for (const std::int32_t node : description_.childrenOf(dialog.node)) {
        if (vocabulary::isCalled(description_, node, "Trigger")) {
            readTrigger(node, dialog);
        }
    }
}

void DialogReader::readTrigger(std::int32_t node, DialogDesc& dialog) {
    TriggerDesc trigger;
    trigger.when = DialogWords::triggerMoments(attribute(node, "EvaluateOn"));
    trigger.type = readTriggerType(node, dialog);
    const bool needsValue = trigger.type != kTriggerVarReset && trigger.type != kTriggerVarRecalculation;
    if (trigger.when == 0 || (needsValue && !has(node, "Value"))) {
        debugLog_.line("WARNING: Extracted a trigger with no type nor specified value (Parent dlg name: " +
                       std::string(dialog.name.view()) + ")");
        return;
    }
    trigger.variable.assign(attribute(node, "Variable"));
    trigger.value.assign(attribute(node, "Value"));
    trigger.condition.assign(attribute(node, "Condition"));
    dialog.triggers.push_back(trigger);
}

std::int32_t DialogReader::readTriggerType(std::int32_t node, const DialogDesc& dialog) {
    if (!has(node, "Type")) {
        return kTriggerVarChange;
    }
    const std::string_view word = attribute(node, "Type");
    const std::optional<std::int32_t> type = DialogWords::triggerType(word);
    if (!type) {
        debugLog_.line("WARNING: Unrecognized trigger type = " + std::string(word) +
                       " (Parent dlg name: " + dialog.name.c_str() + ")");
    }
    return type.value_or(kTriggerVarChange);
}

std::string_view DialogReader::textOf(std::int32_t node) const {
    return description_.getText(node).value_or(std::string_view());
}

std::string_view DialogReader::attribute(std::int32_t node, vocabulary::AttributeName name) const {
    return vocabulary::attributeOf(description_, node, name).value_or(std::string_view());
}

bool DialogReader::has(std::int32_t node, vocabulary::AttributeName name) const {
    return vocabulary::hasAttribute(description_, node, name);
}

bool DialogReader::hasPosition(std::int32_t node) const {
    return has(node, "x") && has(node, "y");
}

std::int32_t DialogReader::numberOr(std::int32_t node, vocabulary::AttributeName name,
                                    std::int32_t fallback) const {
    return has(node, name) ? OUtils::textToInteger(attribute(node, name)) : fallback;
}

std::int32_t DialogReader::colour(std::int32_t node, vocabulary::AttributeName name) const {
    return theme_.parseColour(vocabulary::attributeOf(description_, node, name));
}

// Buttons know no centre.
std::int32_t DialogReader::sideOnly(std::int32_t align) {
    return align == kAlignCenter ? 0 : align;
}
