#pragma once

#include <string_view>

#include "description/dialog_model.h"
#include "description/wizard_words.h"

// What buttons are by themselves, without the attributes of the description.
namespace DialogButtons {

// Gives a button what its attribute Name stands for ("Next", "Cancel", ...); other names change nothing.
void preset(DialogButtonDesc& button, std::string_view name);

// Gives a dialog of a description without buttons a size, a line and buttons to move and to cancel with.
void addStandardFurniture(DialogDesc& dialog, const WizardWords& words);

}  // namespace DialogButtons
