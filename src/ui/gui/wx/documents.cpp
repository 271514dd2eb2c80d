#include "ui/gui/wx/documents.h"

#include <wx/settings.h>
#include <wx/utils.h>

#include "ui/gui/wx/accessibility.h"
#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/length_limit.h"
#include "ui/gui/wx/native_look.h"
#include "ui/gui/wx/rich_text_writer.h"

namespace {

constexpr long kDocumentStyle = wxBORDER_STATIC | wxVSCROLL;

wxFont systemFont() {
    return wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
}

// Between the letters and the edges of their box.
int marginOf(const wxWindow& window) {
    return window.GetCharHeight() / 2;
}

// A page comes with a setup from anywhere. It may neither read files nor reach the network by itself, and a
// click on one of its links starts nothing but the user's browser or mail program.
class Page : public wxHtmlWindow {
public:
    using wxHtmlWindow::wxHtmlWindow;

    wxHtmlOpeningStatus OnOpeningURL(wxHtmlURLType /*type*/, const wxString& /*url*/,
                                     wxString* /*redirect*/) const override {
        return wxHTML_BLOCK;
    }

    void OnLinkClicked(const wxHtmlLinkInfo& link) override {
        const wxString target = link.GetHref();
        if (target.StartsWith("#")) {
            wxHtmlWindow::OnLinkClicked(link);
        } else if (isHarmless(target.Lower())) {
            wxLaunchDefaultBrowser(target);
        }
    }

private:
    static bool isHarmless(const wxString& target) {
        return target.StartsWith("http://") || target.StartsWith("https://") || target.StartsWith("mailto:");
    }
};

// A document that was given no name is called by its first line.
void describe(wxWindow& document, const wxString& text, bool isNamed) {
    accessibility::setContent(document, accessibility::Role::kDocument, text);
    if (!isNamed) {
        accessibility::setName(document, text.Strip(wxString::both).BeforeFirst('\n'));
    }
}

}  // namespace

LinesControl::LinesControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
    lines_ = new wxTextCtrl;
    lines_->Hide();
    lines_->Create(site.parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                   wxTE_MULTILINE | wxTE_READONLY | wxVSCROLL);
    adopt(lines_);
    liftLengthLimit(*lines_);
    if (spec.kind == ControlKind::kLines) {
        wxFont font = systemFont();
        font.SetPointSize(font.GetPointSize() - 1);
        lines_->SetFont(font);
    }
    native_look::setMargin(*lines_, marginOf(*lines_));
    lines_->ChangeValue(wideText(spec.text));
}

// The system would lay out all lines of a box that has left the page, before anything that waits for an idle
// moment.
LinesControl::~LinesControl() {
    lines_->ChangeValue(wxString());
}

void LinesControl::setText(const wxString& text) {
    lines_->ChangeValue(text);
    lines_->SetInsertionPoint(0);
}

RichTextControl::RichTextControl(const ControlSite& site, const ControlSpec& spec)
    : PageControl(site), isNamed_(!spec.name.empty()) {
    document_ = new wxRichTextCtrl;
    document_->Hide();
    document_->Create(site.parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                      wxRE_MULTILINE | wxRE_READONLY | kDocumentStyle);
    adopt(document_);
    document_->SetFont(systemFont());
    document_->SetMargins(marginOf(*document_), marginOf(*document_));
    document_->SetTextCursor(wxCursor(wxCURSOR_ARROW));
    RichTextControl::setText(wideText(spec.text));
}

void RichTextControl::setText(const wxString& text) {
    document_->SetValue(text);
    describe(*document_, text, isNamed_);
}

void RichTextControl::setRichText(std::span<const RichTextCommand> commands) {
    document_->Freeze();
    writeRichText(*document_, commands);
    document_->Thaw();
    describe(*document_, text(), isNamed_);
}

void RichTextControl::applyColours() {
    const ControlColours& own = colours();
    const wxColour text = own.foreground == -1 ? wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT)
                                               : colourOf(own.foreground);
    document_->SetBackgroundColour(own.background == -1 ? wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW)
                                                        : colourOf(own.background));
    wxRichTextAttr style = document_->GetBasicStyle();
    style.SetTextColour(text);
    document_->SetBasicStyle(style);
    document_->Refresh();
}

HtmlControl::HtmlControl(const ControlSite& site, const ControlSpec& spec)
    : PageControl(site), isNamed_(!spec.name.empty()) {
    auto* page = new Page;
    page->Hide();
    page->Create(site.parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxHW_SCROLLBAR_AUTO | wxBORDER_STATIC);
    document_ = page;
    adopt(document_);
    document_->SetCanFocus(true);  // GTK takes it for a panel that only holds others
    document_->SetBorders(marginOf(*document_));
    document_->SetStandardFonts(systemFont().GetPointSize(), systemFont().GetFaceName());
}

wxString HtmlControl::text() const {
    return document_->ToText();
}

void HtmlControl::setHtml(const wxString& page) {
    document_->SetPage(page);
    applyColours();
    describe(*document_, text(), isNamed_);
}

void HtmlControl::applyColours() {
    // A page without a background of its own has that of the control.
    document_->SetHTMLBackgroundColour(colours().background == -1
                                           ? wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW)
                                           : colourOf(colours().background));
    document_->Refresh();
}
