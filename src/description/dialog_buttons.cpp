#include "description/dialog_buttons.h"

#include "base/text_functions.h"

namespace DialogButtons {

namespace {

struct Preset {
    const char* name;
    std::uint32_t flags;
    std::int32_t shift;  // where the flags hold kButtonHasShift
    const char* action;  // where the flags hold kButtonHasAction
};

// The variable of the last two is fixed, whatever variable the description gives that role.
constexpr Preset kPresets[] = {
    {"Next", kButtonHasShift | kButtonDefault, 1, nullptr},
    {"Back", kButtonHasShift, -1, nullptr},
    {"Cancel", kButtonHasAction, 0, "Cancel"},
    {"Help", kButtonHasAction, 0, "Help"},
    {"Customize", kButtonHasShift | kButtonHasAction, 1, "[CUSTOMIZE]='1'"},
    {"Express", kButtonHasShift | kButtonHasAction, -1, "[CUSTOMIZE]='0'"},
};

constexpr std::int32_t kFurnitureWidth = 500;
constexpr std::int32_t kFurnitureHeight = 390;
constexpr std::int32_t kFurnitureRow = 50;  // the buttons' distance from the bottom

constexpr const char* kDialogsWithoutBack[] = {"Welcome", "Finish", "BadFinish"};

DialogButtonDesc furnitureButton(const char* label, std::int32_t x, DialogAlign side) {
    DialogButtonDesc button;
    button.label.assign(label);
    button.x = x;
    button.y = kFurnitureRow;
    button.horizontalAlign = side;
    button.verticalAlign = kAlignBottom;
    return button;
}

DialogButtonDesc shiftButton(const char* label, std::int32_t x, std::int32_t shift) {
    DialogButtonDesc button = furnitureButton(label, x, kAlignRight);
    button.flags = kButtonHasShift;
    button.shift = shift;
    return button;
}

DialogElementDesc furnitureLine() {
    DialogElementDesc line;
    line.kind = kElementHLine;
    line.x = 1;
    line.y = 70;
    line.width = -1;
    line.height = 1;
    line.horizontalAlign = kAlignLeft;
    line.verticalAlign = kAlignBottom;
    return line;
}

bool hasBack(const DialogDesc& dialog) {
    for (const char* name : kDialogsWithoutBack) {
        if (dialog.name.view() == name) {
            return false;
        }
    }
    return true;
}

}  // namespace

void preset(DialogButtonDesc& button, const char* name) {
    for (const Preset& known : kPresets) {
        if (OUtils::equalsIgnoreCase(known.name, name)) {
            button.flags |= known.flags;
            if ((known.flags & kButtonHasShift) != 0) {
                button.shift = known.shift;
            }
            if ((known.flags & kButtonHasAction) != 0) {
                button.action.assign(known.action);
            }
            return;
        }
    }
}

std::vector<std::string_view> presetNames() {
    std::vector<std::string_view> names;
    for (const Preset& known : kPresets) {
        names.emplace_back(known.name);
    }
    return names;
}

void addStandardFurniture(DialogDesc& dialog) {
    dialog.width = kFurnitureWidth;
    dialog.height = kFurnitureHeight;
    dialog.elements.push_back(furnitureLine());
    dialog.buttons.push_back(shiftButton("&Next", 100, 1));
    DialogButtonDesc cancel = furnitureButton("&Cancel", 20, kAlignLeft);
    cancel.flags = kButtonHasAction;
    cancel.action.assign("Cancel");
    dialog.buttons.push_back(cancel);
    if (hasBack(dialog)) {
        dialog.buttons.push_back(shiftButton("&Back", 190, -1));
    }
}

}  // namespace DialogButtons
