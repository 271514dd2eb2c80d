#include "description/dialog_buttons.h"

#include <algorithm>

#include "description/vocabulary_lookup.h"

namespace DialogButtons {

namespace {

struct Preset {
    std::uint32_t flags;
    std::int32_t shift;       // where the flags hold kButtonHasShift
    std::string_view action;  // where the flags hold kButtonHasAction
};

// The variable of the last two is fixed: descriptions rely on it, also where they give the role of
// CustomizeSettings to another one.
constexpr vocabulary::Row<Preset> kPresets[] = {
    {"Next", {kButtonHasShift | kButtonDefault, 1, {}}},
    {"Back", {kButtonHasShift, -1, {}}},
    {"Cancel", {kButtonHasAction, 0, "Cancel"}},
    {"Help", {kButtonHasAction, 0, "Help"}},
    {"Customize", {kButtonHasShift | kButtonHasAction, 1, "[CUSTOMIZE]='1'"}},
    {"Express", {kButtonHasShift | kButtonHasAction, -1, "[CUSTOMIZE]='0'"}},
};
static_assert(vocabulary::coversList(kPresets, vocabulary::kButtonNames));

constexpr std::int32_t kFurnitureWidth = 500;
constexpr std::int32_t kFurnitureHeight = 390;
constexpr std::int32_t kFurnitureRow = 50;  // the buttons' distance from the bottom

constexpr std::string_view kDialogsWithoutBack[] = {"Welcome", "Finish", "BadFinish"};

DialogButtonDesc furnitureButton(std::string_view label, std::int32_t x, DialogAlign side) {
    DialogButtonDesc button;
    button.label.assign(label);
    button.x = x;
    button.y = kFurnitureRow;
    button.horizontalAlign = side;
    button.verticalAlign = kAlignBottom;
    return button;
}

DialogButtonDesc shiftButton(std::string_view label, std::int32_t x, std::int32_t shift) {
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
    const auto end = std::end(kDialogsWithoutBack);
    return std::find(std::begin(kDialogsWithoutBack), end, dialog.name.view()) == end;
}

}  // namespace

void preset(DialogButtonDesc& button, std::string_view name) {
    const std::optional<Preset> known = vocabulary::meaningOf(kPresets, name);
    if (!known) {
        return;
    }
    button.flags |= known->flags;
    if ((known->flags & kButtonHasShift) != 0) {
        button.shift = known->shift;
    }
    if ((known->flags & kButtonHasAction) != 0) {
        button.action.assign(known->action);
    }
}

void addStandardFurniture(DialogDesc& dialog, const WizardWords& words) {
    dialog.width = kFurnitureWidth;
    dialog.height = kFurnitureHeight;
    dialog.elements.push_back(furnitureLine());
    dialog.buttons.push_back(shiftButton(words.text("ButtonNext"), 100, 1));
    DialogButtonDesc cancel = furnitureButton(words.text("ButtonCancel"), 20, kAlignLeft);
    cancel.flags = kButtonHasAction;
    cancel.action.assign("Cancel");
    dialog.buttons.push_back(cancel);
    if (hasBack(dialog)) {
        dialog.buttons.push_back(shiftButton(words.text("ButtonBack"), 190, -1));
    }
}

}  // namespace DialogButtons
