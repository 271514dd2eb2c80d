#pragma once

#include <memory>

#include "ui/gui/dialog_field.h"

// The field for the type of the description; null for an unknown one.
std::unique_ptr<DialogField> makeDialogField(PageHost& host, const DialogFieldDesc& description);
