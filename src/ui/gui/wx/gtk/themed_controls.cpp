#include "ui/gui/wx/themed_controls.h"

#include <gtk/gtk.h>

#include <string>

#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/gtk/style_sheet.h"
#include "ui/gui/wx/plain_controls.h"

// The desktop's own controls in other colours: they keep their keys, their focus and what a screen reader is
// told.

namespace {

std::string declaration(const char* property, std::int32_t colour) {
    if (colour == -1) {
        return {};
    }
    return std::string(property) + ":" +
           std::string(colourOf(colour).GetAsString(wxC2S_HTML_SYNTAX).utf8_str()) + ";";
}

std::string surface(std::int32_t foreground, std::int32_t background) {
    std::string rules = declaration("color", foreground);
    if (background != -1) {
        rules += "background-image:none;box-shadow:none;text-shadow:none;" +
                 declaration("background-color", background) + declaration("border-color", background);
    }
    return rules;
}

// Under the mouse and with the focus a control looks active.
std::string buttonStyle(const ControlColours& colours) {
    const std::int32_t foreground =
        colours.activeForeground == -1 ? colours.foreground : colours.activeForeground;
    const std::int32_t background =
        colours.activeBackground == -1 ? colours.background : colours.activeBackground;
    return "button{" + surface(colours.foreground, colours.background) + "}button:focus,button:hover{" +
           surface(foreground, background) + "outline-color:currentColor;}button:disabled{opacity:0.5;}";
}

std::string linkStyle(const ControlColours& colours) {
    return buttonStyle(colours) + "button{border-color:transparent;" +
           (colours.background == -1 ? "background:none;" : "") + "}";
}

std::string ornamentStyle(const ControlColours& colours) {
    return "separator{" + declaration("background-color", colours.foreground) + "}border{" +
           declaration("border-color", colours.foreground) + "}";
}

// In the colour of the caption, which is one that can be read on the page.
constexpr char kMarks[] =
    "check,radio{background-image:none;box-shadow:none;-gtk-icon-shadow:none;border-color:currentColor;}";

std::string choiceStyle(const ControlColours& colours) {
    const std::int32_t foreground =
        colours.activeForeground == -1 ? colours.foreground : colours.activeForeground;
    return "*{" + declaration("color", colours.foreground) +
           declaration("background-color", colours.background) + "}*:focus,*:hover{" +
           declaration("color", foreground) + "outline-color:currentColor;}*:disabled{opacity:0.5;}" +
           (colours.foreground == -1 ? "" : kMarks);
}

std::string barStyle(const ControlColours& colours) {
    return "trough{" + surface(-1, colours.background) + "}progress{" + surface(-1, colours.foreground) + "}";
}

template <typename Plain, std::string (*style)(const ControlColours&)>
class Styled : public Plain {
public:
    using Plain::Plain;

protected:
    void applyColours() override {
        ControlColours shown = this->colours();
        if (shown.foreground == -1) {
            shown.foreground = this->pageColours().foreground;
        }
        sheet_.apply(this->window()->GetHandle(), style(shown));
    }

private:
    StyleSheet sheet_;
};

class StyledBar : public Styled<ProgressControl, barStyle> {
public:
    using Styled::Styled;

protected:
    void fillHeight(int height) override {
        // 4 pixels where the letters are those of the reference.
        setBarHeight(window()->GetHandle(), height, window()->GetCharHeight() / 4);
    }
};

}  // namespace

std::unique_ptr<PageControl> makeThemedControl(const ControlSite& site, const ControlSpec& spec) {
    switch (spec.kind) {
        case ControlKind::kButton:
            return std::make_unique<Styled<ButtonControl, buttonStyle>>(site, spec);
        case ControlKind::kLinkButton:
            return std::make_unique<Styled<ButtonControl, linkStyle>>(site, spec);
        case ControlKind::kCheckBox:
            return std::make_unique<Styled<CheckBoxControl, choiceStyle>>(site, spec);
        case ControlKind::kRadioButton:
            return std::make_unique<Styled<RadioButtonControl, choiceStyle>>(site, spec);
        case ControlKind::kProgressBar:
            return std::make_unique<StyledBar>(site, spec);
        case ControlKind::kLine:
        case ControlKind::kFrame:
            return std::make_unique<Styled<OrnamentControl, ornamentStyle>>(site, spec);
        default:
            return nullptr;
    }
}

void underlineAccessKeys(wxWindow& frame, bool underline) {
    gtk_window_set_mnemonics_visible(GTK_WINDOW(frame.GetHandle()), underline ? TRUE : FALSE);
}
