#pragma once

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/textctrl.h>

#include "ui/gui/toolkit/toolkit.h"

// What the system's own controls need so that they look well with letters of every size. Has one
// implementation for each system (gtk/, msw/).
namespace native_look {

// Before the first control is made.
void prepare();

// Of a text of one line in the letters that controls have, in the pixels that they are given places in.
wxSize sizeOf(const wxString& text);

// What a control takes where it isn't given a size.
wxSize bestSizeOf(const wxWindow& window);

// The width in which the caption isn't cut, with what is beside it, and the height of the letters.
wxSize captionSizeOf(const wxControl& control);

// Draws the window with all that is in it, as if it were in front, in pixels of the screen. False: it can't
// be drawn.
bool draw(wxWindow& window, PictureReceiver& outPicture);

// The bar becomes as thick as its place is high, in pixels.
void fillHeight(wxGauge& bar, int height);

// Leaves space, in pixels, between a text of many lines and the edges of its box, as far as the system can.
void setMargin(wxTextCtrl& lines, int margin);

// The button looks like a link that can be pressed.
void showAsLink(wxButton& button);

}  // namespace native_look
