#include "description/dialog_reader.h"

#include "base/text_functions.h"
#include "description/colour_theme.h"
#include "description/dialog_buttons.h"
#include "description/dialog_words.h"
#include "description/pxml.h"
#include "support/debug_log.h"

namespace {

constexpr std::int32_t kDialogWidth = 760;
constexpr std::int32_t kDialogHeight = 520;

// The two characters backslash and n stand for a line end.
std::string withLineEnds(const char* text) {
    std::string out = text == nullptr ? "" : text;
    for (std::size_t at = out.find("\\n"); at != std::string::npos; at = out.find("\\n", at + 2)) {
        out[at] = '\r';
        out[at + 1] = '\n';
    }
    return out;
}

bool isPresent(const char* text) {
    return text != nullptr && *text != '\0';
}

}  // namespace

int DialogReader::readDialogs(bool useUninstallDialogs) {
    uninstalling_ = useUninstallDialogs;
    model_.clear();
    const std::int32_t section =
        description_.findByName(useUninstallDialogs ? "UninstallDialogs" : "Dialogs");
    if (section < 0) {
        return -1;
    }
    // The count is never set back: only dialogs ahead of the first button of all get the furniture.
    int buttons = 0;
    for (const std::int32_t node : childrenOf(section)) {
        DialogDesc dialog;
        dialog.node = node;
        buttons += readPage(dialog);
        if (dialog.has(kDialogHasSubDialogs)) {
            const int more = readSubDialogs(dialog);
            if (more < 0) {
                return more;
            }
            buttons += more;
        }
        if (buttons == 0) {
            DialogButtons::addStandardFurniture(dialog);
        }
        model_.add(std::move(dialog));
    }
    return 0;
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
    OUtils::splitText(attribute(node, "Retain"), ';', dialog.retain);
}

// Sub-dialogs come in the order of the tasks that name them; what no task names isn't read. Returns the
// number of buttons, or -1.
int DialogReader::readSubDialogs(DialogDesc& dialog) {
    if (readTaskList(dialog) != 0) {
        return -1;
    }
    const std::int32_t section = description_.findChild(dialog.node, "SubDialogs");
    if (section < 0) {
        debugLog_.print("ERROR: Could NOT find <SubDialogs> tag! (parent: %s)", dialog.name.c_str());
        return -1;
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

int DialogReader::readTaskList(DialogDesc& dialog) {
    const std::int32_t section = description_.findChild(dialog.node, "TaskList");
    if (section < 0) {
        debugLog_.print("ERROR: Could NOT find <TaskList> tag! (parent: %s)", dialog.name.c_str());
        return -1;
    }
    for (const std::int32_t node : childrenOf(section)) {
        TaskDesc task;
        task.name.assign(description_.getName(node));
        task.currentLabel.assign(attribute(node, "CurrentLabel"));
        task.finishLabel.assign(attribute(node, "FinishLabel"));
        task.unreachedLabel.assign(attribute(node, "UnreachedLabel"));
        task.showCondition.assign(attribute(node, "ShowCondition"));
        task.enableCondition.assign(attribute(node, "EnableCondition"));
        dialog.tasks.push_back(task);
    }
    return 0;
}

void DialogReader::readElements(DialogDesc& dialog) {
    for (const std::int32_t node : childrenOf(dialog.node)) {
        const std::int32_t kind = DialogWords::elementKind(description_.getName(node));
        DialogElementDesc element;
        if (kind >= 0 && readElement(node, kind, element)) {
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
    outElement.text = withLineEnds(description_.getText(node));
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
    for (const std::int32_t node : childrenOf(dialog.node)) {
        DialogFieldDesc field;
        if (OUtils::equalsIgnoreCase(description_.getName(node), "Field") && readField(node, dialog, field)) {
            dialog.fields.push_back(field);
        }
    }
}

bool DialogReader::readField(std::int32_t node, const DialogDesc& dialog, DialogFieldDesc& outField) {
    const char* type = attribute(node, "Type");
    outField.type = DialogWords::fieldType(type);
    if (outField.type < 0) {
        debugLog_.print("WARNING: Unrecognized field type = %s (Parent dlg name: %s)",
                        type == nullptr ? "" : type, dialog.name.c_str());
        return false;
    }
    outField.label.assign(attribute(node, "Label"));
    outField.variable.assign(description_.getText(node));
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
    for (const std::int32_t node : childrenOf(dialog.node)) {
        DialogButtonDesc button;
        if (OUtils::equalsIgnoreCase(description_.getName(node), "Button") && readButton(node, button)) {
            dialog.buttons.push_back(button);
            ++count;
        }
    }
    return count;
}

bool DialogReader::readButton(std::int32_t node, DialogButtonDesc& outButton) {
    const char* label = description_.getText(node);
    if (!isPresent(label) || !hasPosition(node)) {
        return false;
    }
    outButton.label.assign(label);
    outButton.condition.assign(attribute(node, "Condition"));
    outButton.enableCondition.assign(attribute(node, "EnableCondition"));
    outButton.action.assign(attribute(node, "Action"));
    outButton.shift = numberOr(node, "DialogShift", 0);
    outButton.flags = (outButton.shift != 0 ? kButtonHasShift : 0U) |
                      (attribute(node, "Action") != nullptr ? kButtonHasAction : 0U) |
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
    for (const std::int32_t node : childrenOf(dialog.node)) {
        if (OUtils::equalsIgnoreCase(description_.getName(node), "Trigger")) {
            readTrigger(node, dialog);
        }
    }
}

void DialogReader::readTrigger(std::int32_t node, DialogDesc& dialog) {
    TriggerDesc trigger;
    trigger.when = DialogWords::triggerMoments(attribute(node, "EvaluateOn"));
    trigger.type = readTriggerType(node, dialog);
    const char* value = attribute(node, "Value");
    const bool needsValue = trigger.type != kTriggerVarReset && trigger.type != kTriggerVarRecalculation;
    if (trigger.when == 0 || (needsValue && value == nullptr)) {
        debugLog_.print("WARNING: Extracted a trigger with no type nor specified value (Parent dlg name: %s)",
                        dialog.name.c_str());
        return;
    }
    trigger.variable.assign(attribute(node, "Variable"));
    trigger.value.assign(value);
    trigger.condition.assign(attribute(node, "Condition"));
    dialog.triggers.push_back(trigger);
}

std::int32_t DialogReader::readTriggerType(std::int32_t node, const DialogDesc& dialog) {
    const char* word = attribute(node, "Type");
    if (word == nullptr) {
        return kTriggerVarChange;
    }
    const std::int32_t type = DialogWords::triggerType(word);
    if (type < 0) {
        debugLog_.print("WARNING: Unrecognized trigger type = %s (Parent dlg name: %s)", word,
                        dialog.name.c_str());
    }
    return type < 0 ? kTriggerVarChange : type;
}

std::vector<std::int32_t> DialogReader::childrenOf(std::int32_t node) const {
    std::vector<std::int32_t> children;
    description_.listChildren(node, children);
    return children;
}

const char* DialogReader::attribute(std::int32_t node, const char* name) const {
    return description_.getAttribute(node, name);
}

bool DialogReader::hasPosition(std::int32_t node) const {
    return attribute(node, "x") != nullptr && attribute(node, "y") != nullptr;
}

std::int32_t DialogReader::numberOr(std::int32_t node, const char* name, std::int32_t fallback) const {
    const char* text = attribute(node, name);
    return text == nullptr ? fallback : OUtils::textToInteger(text);
}

std::int32_t DialogReader::colour(std::int32_t node, const char* name) const {
    return theme_.parseColour(attribute(node, name));
}

// Buttons know no centre.
std::int32_t DialogReader::sideOnly(std::int32_t align) {
    return align == kAlignCenter ? 0 : align;
}
