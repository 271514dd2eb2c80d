#include "ui/gui/wx/plain_controls.h"

#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/statbox.h>
#include <wx/statline.h>

#include <cmath>

#include "ui/gui/wx/accessibility.h"
#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/native_look.h"
#include "ui/gui/wx/radio_group.h"

namespace {

// Windows are made hidden, so that nothing flickers while a page is built.
template <typename Window, typename... Arguments>
Window* makeHidden(Arguments... arguments) {
    auto* window = new Window;
    window->Hide();
    window->Create(arguments...);
    return window;
}

std::int32_t firstSet(std::int32_t colour, std::int32_t otherwise) {
    return colour == -1 ? otherwise : colour;
}

// What has no background of its own shows that of the page.
void paintOnPage(wxWindow& window, const ControlColours& own, const PageColours& page) {
    window.SetForegroundColour(colourOf(firstSet(own.foreground, page.foreground)));
    window.SetBackgroundColour(colourOf(firstSet(own.background, page.background)));
    window.Refresh();
}

// Some schemes of colours have one for links that can't be told from a page.
wxColour linkColourOn(const wxColour& page) {
    const wxColour link = wxSystemSettings::GetColour(wxSYS_COLOUR_HOTLIGHT);
    const bool canBeRead = std::abs(link.GetLuminance() - page.GetLuminance()) > 0.3;
    return canBeRead ? link : wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
}

// In the place of none, which Windows can't draw.
wxBitmap transparentPixel() {
    const std::uint8_t rgb[3] = {};
    const std::uint8_t alpha = 0;
    return bitmapOf({1, 1, rgb, &alpha}, 1.0);
}

}  // namespace

ButtonControl::ButtonControl(const ControlSite& site, const ControlSpec& spec)
    : PageControl(site), isLink_(spec.kind == ControlKind::kLinkButton) {
    button_ = makeHidden<wxButton>(site.parent, wxID_ANY, wideText(spec.text), wxDefaultPosition,
                                   wxDefaultSize, isLink_ ? long{wxBORDER_NONE} : 0L);
    adopt(button_);
    if (isLink_) {
        native_look::showAsLink(*button_);
        accessibility::setRole(*button_, accessibility::Role::kLink);
    }
    button_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { this->site().events->pressed(id()); });
}

void ButtonControl::applyColours() {
    if (!isLink_) {
        PageControl::applyColours();
        return;
    }
    paintOnPage(*button_, colours(), pageColours());
    if (colours().foreground == -1) {
        button_->SetForegroundColour(linkColourOn(button_->GetBackgroundColour()));
    }
}

CheckBoxControl::CheckBoxControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
    box_ = makeHidden<wxCheckBox>(site.parent, wxID_ANY, wideText(spec.text));
    adopt(box_);
    box_->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { this->site().events->pressed(id()); });
}

void CheckBoxControl::applyColours() {
    paintOnPage(*box_, colours(), pageColours());
}

RadioButtonControl::RadioButtonControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
    site.group->makeNoChoice(site.parent);
    button_ = makeHidden<wxRadioButton>(site.parent, wxID_ANY, wideText(spec.text));
    adopt(button_);
    site.group->join(*this);
    // A press of the chosen button is an event as well.
    button_->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) {
        if (this->site().group->choose(this)) {
            this->site().events->pressed(id());
        }
    });
}

RadioButtonControl::~RadioButtonControl() {
    site().group->leave(*this);
}

bool RadioButtonControl::isTabStop() const {
    return site().group->isEntry(*this);
}

void RadioButtonControl::setChecked(bool checked) {
    if (checked) {
        site().group->choose(this);
        button_->SetValue(true);
    } else if (isChecked()) {
        site().group->chooseNone();
    }
}

void RadioButtonControl::applyColours() {
    paintOnPage(*button_, colours(), pageColours());
}

ProgressControl::ProgressControl(const ControlSite& site, const ControlSpec& /*spec*/) : PageControl(site) {
    gauge_ = makeHidden<wxGauge>(site.parent, wxID_ANY, 100, wxDefaultPosition, wxDefaultSize,
                                 wxGA_HORIZONTAL | wxGA_SMOOTH);
    adopt(gauge_);
}

void ProgressControl::setPlace(Place place) {
    PageControl::setPlace(place);
    fillHeight(gauge_->GetSize().y);
}

void ProgressControl::fillHeight(int height) {
    native_look::fillHeight(*gauge_, height);
}

TextControl::TextControl(const ControlSite& site, const ControlSpec& spec)
    : PageControl(site), words_(wideText(spec.text)) {
    auto* panel = makeHidden<wxPanel>(site.parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE);
    adopt(panel);
    text_ = new wxStaticText(panel, wxID_ANY, wxString(), wxPoint(0, 0));
    text_->SetLabelText(words_);
}

void TextControl::setPlace(Place place) {
    wrap(place.width);
    const wxSize best = text_->GetBestSize();
    place.width = place.width < 1 ? best.x : place.width;
    place.height = place.height < 1 ? best.y : place.height;
    PageControl::setPlace(place);
}

void TextControl::setText(const wxString& text) {
    words_ = text;
    wrap(window()->GetSize().x);
}

void TextControl::wrap(int width) {
    text_->SetLabelText(words_);
    if (width > 0) {
        text_->Wrap(width);
    }
    text_->SetSize(text_->GetBestSize());
}

void TextControl::applyColours() {
    paintOnPage(*window(), colours(), pageColours());
    paintOnPage(*text_, colours(), pageColours());
}

LabelControl::LabelControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
    label_ = makeHidden<wxStaticText>(site.parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                      wxST_NO_AUTORESIZE);
    adopt(label_);
    label_->SetLabelText(wideText(spec.text));
    // It keeps the size that it needed for no text.
    label_->InvalidateBestSize();
}

void LabelControl::applyColours() {
    paintOnPage(*label_, colours(), pageColours());
}

TextBoxControl::TextBoxControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
    const long style = spec.kind == ControlKind::kPasswordBox ? long{wxTE_PASSWORD} : 0L;
    box_ = makeHidden<wxTextCtrl>(site.parent, wxID_ANY, wideText(spec.text), wxDefaultPosition,
                                  wxDefaultSize, style);
    adopt(box_);
    box_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { this->site().events->textChanged(id()); });
}

void TextBoxControl::setText(const wxString& text) {
    // Setting it would move the caret of somebody who is typing.
    if (text != box_->GetValue()) {
        box_->ChangeValue(text);
    }
}

wxSize TextBoxControl::wordsSize() const {
    const wxString words = text();
    if (words.empty() || box_->HasFlag(wxTE_PASSWORD)) {
        return {0, 0};
    }
    const wxSize letters = native_look::sizeOf(words);
    return {box_->GetSizeFromTextSize(letters.x).x, letters.y};
}

PictureControl::PictureControl(const ControlSite& site, const ControlSpec& /*spec*/) : PageControl(site) {
    picture_ = makeHidden<wxStaticBitmap>(site.parent, wxID_ANY, transparentPixel());
    adopt(picture_);
}

void PictureControl::setPicture(const Picture& picture) {
    // It would take the size of the picture.
    const wxSize size = picture_->GetSize();
    const wxBitmap bitmap = bitmapOf(picture, display::density());
    picture_->SetBitmap(unscaled(bitmap.IsOk() ? bitmap : transparentPixel()));
    picture_->SetSize(size);
}

void PictureControl::applyColours() {
    paintOnPage(*picture_, colours(), pageColours());
}

OrnamentControl::OrnamentControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
    if (spec.kind == ControlKind::kLine) {
        adopt(makeHidden<wxStaticLine>(site.parent, wxID_ANY));
    } else {
        adopt(makeHidden<wxStaticBox>(site.parent, wxID_ANY, wxString()));
    }
}
