#pragma once

#include <string_view>
#include <vector>

#include "description/dialog_model.h"

// What buttons are by themselves, without the attributes of the description.
namespace DialogButtons {

// Lays what the attribute Name stands for ("Next", "Cancel", ...) over a button; other names change nothing.
void preset(DialogButtonDesc& button, const char* name);
// All names that preset knows.
std::vector<std::string_view> presetNames();

// Gives a dialog of a description without buttons a size, a line and buttons to move and to cancel with.
void addStandardFurniture(DialogDesc& dialog);

}  // namespace DialogButtons
