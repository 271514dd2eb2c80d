#pragma once

#include <wx/html/htmlwin.h>
#include <wx/richtext/richtextctrl.h>
#include <wx/textctrl.h>

#include "ui/gui/wx/page_control.h"

// Long texts that are only read.

// kLines and kPlainText.
class LinesControl : public PageControl {
public:
    LinesControl(const ControlSite& site, const ControlSpec& spec);
    ~LinesControl() override;
    void setText(const wxString& text) override;
    wxString text() const override { return lines_->GetValue(); }
    void appendText(const wxString& text) override { lines_->AppendText(text); }

private:
    wxTextCtrl* lines_;
};

class RichTextControl : public PageControl {
public:
    RichTextControl(const ControlSite& site, const ControlSpec& spec);
    wxString text() const override { return document_->GetValue(); }
    void setText(const wxString& text) override;
    void setRichText(std::span<const RichTextCommand> commands) override;

protected:
    void applyColours() override;

private:
    wxRichTextCtrl* document_;
    bool isNamed_;
};

class HtmlControl : public PageControl {
public:
    HtmlControl(const ControlSite& site, const ControlSpec& spec);
    // It counts as a panel, which would look for a child that takes the focus.
    void takeFocus() override { document_->SetFocusIgnoringChildren(); }
    wxString text() const override;
    void setHtml(const wxString& page) override;

protected:
    void applyColours() override;

private:
    wxHtmlWindow* document_;
    bool isNamed_;
};
