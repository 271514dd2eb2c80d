#include "ui/gui/wx/page_control.h"

#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/native_look.h"

PageControl::~PageControl() {
    if (window_ != nullptr) {
        site_.retired->add(window_);
    }
}

void PageControl::adopt(wxWindow* window) {
    window_ = window;
}

void PageControl::setPlace(Place place) {
    const wxSize best = native_look::bestSizeOf(*window_);
    window_->SetSize(place.x, place.y, place.width < 1 ? best.x : place.width,
                     place.height < 1 ? best.y : place.height, wxSIZE_ALLOW_MINUS_ONE);
}

Place PageControl::place() const {
    const wxRect rectangle = window_->GetRect();
    return {rectangle.x, rectangle.y, rectangle.width, rectangle.height};
}

bool PageControl::isTabStop() const {
    return window_->AcceptsFocusFromKeyboard();
}

void PageControl::setColours(const ControlColours& colours) {
    colours_ = colours;
    applyColours();
}

void PageControl::setPageColours(const PageColours& page) {
    pageColours_ = page;
    applyColours();
}

void PageControl::applyColours() {
    window_->SetForegroundColour(colourOf(colours_.foreground));
    window_->SetBackgroundColour(colourOf(colours_.background));
    window_->Refresh();
}
