#pragma once

#include <wx/bitmap.h>
#include <wx/bmpbndl.h>
#include <wx/colour.h>
#include <wx/string.h>

#include <cstdint>
#include <string_view>

#include "ui/gui/toolkit/control.h"
#include "ui/gui/toolkit/toolkit.h"

// Between the values of the border and those of wxWidgets.

wxString wideText(std::string_view utf8);
void handOver(const wxString& text, TextReceiver& receiver);

// -1 becomes no colour.
wxColour colourOf(std::int32_t colour);

// Invalid for a picture without pixels. `density`: pixels of the picture in a unit of length.
wxBitmap bitmapOf(const Picture& picture, double density);

// Shown as it is whatever the resolution of the screen, which its size already allows for.
wxBitmapBundle unscaled(const wxBitmap& bitmap);
