#pragma once

#include "description/dialog_model.h"

// What buttons are by themselves, without the attributes of the description.
namespace DialogButtons {

// Lays what the attribute Name stands for ("Next", "Cancel", ...) over a button; other names change nothing.
void preset(DialogButtonDesc& button, const char* name);

// Gives a dialog of a description without buttons a size, a line and buttons to move and to cancel with.
void addStandardFurniture(DialogDesc& dialog);

}  // namespace DialogButtons
