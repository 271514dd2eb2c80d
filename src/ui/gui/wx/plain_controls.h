#pragma once

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/gauge.h>
#include <wx/radiobut.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "ui/gui/wx/native_look.h"
#include "ui/gui/wx/page_control.h"

// The controls of the system, as they are.

// kButton and kLinkButton.
class ButtonControl : public PageControl {
public:
    ButtonControl(const ControlSite& site, const ControlSpec& spec);
    void setText(const wxString& text) override { button_->SetLabel(text); }
    wxString text() const override { return button_->GetLabel(); }
    wxSize wordsSize() const override { return native_look::captionSizeOf(*button_); }
    wxButton* button() const { return button_; }

protected:
    void applyColours() override;

private:
    wxButton* button_;
    bool isLink_;
};

class CheckBoxControl : public PageControl {
public:
    CheckBoxControl(const ControlSite& site, const ControlSpec& spec);
    void setText(const wxString& text) override { box_->SetLabel(text); }
    wxString text() const override { return box_->GetLabel(); }
    wxSize wordsSize() const override { return native_look::captionSizeOf(*box_); }
    void setChecked(bool checked) override { box_->SetValue(checked); }
    bool isChecked() const override { return box_->GetValue(); }

protected:
    void applyColours() override;

private:
    wxCheckBox* box_;
};

class RadioButtonControl : public PageControl {
public:
    RadioButtonControl(const ControlSite& site, const ControlSpec& spec);
    ~RadioButtonControl() override;
    void setText(const wxString& text) override { button_->SetLabel(text); }
    wxString text() const override { return button_->GetLabel(); }
    wxSize wordsSize() const override { return native_look::captionSizeOf(*button_); }
    bool isTabStop() const override;
    void setChecked(bool checked) override;
    bool isChecked() const override { return button_->GetValue(); }

protected:
    void applyColours() override;

private:
    wxRadioButton* button_;
};

class ProgressControl : public PageControl {
public:
    ProgressControl(const ControlSite& site, const ControlSpec& spec);
    void setPlace(Place place) override;
    bool isTabStop() const override { return false; }
    void setProgress(int percent) override { gauge_->SetValue(percent); }

protected:
    virtual void fillHeight(int height);

private:
    wxGauge* gauge_;
};

// kText: words inside a panel, wrapped where its width ends.
class TextControl : public PageControl {
public:
    TextControl(const ControlSite& site, const ControlSpec& spec);
    void setPlace(Place place) override;
    bool isTabStop() const override { return false; }
    void setText(const wxString& text) override;
    wxString text() const override { return words_; }
    wxSize wordsSize() const override { return text_->GetSize(); }

protected:
    void applyColours() override;

private:
    void wrap(int width);

    wxStaticText* text_;
    wxString words_;
};

class LabelControl : public PageControl {
public:
    LabelControl(const ControlSite& site, const ControlSpec& spec);
    bool isTabStop() const override { return false; }
    void setText(const wxString& text) override { label_->SetLabelText(text); }
    wxString text() const override { return label_->GetLabelText(); }
    wxSize wordsSize() const override { return native_look::captionSizeOf(*label_); }

protected:
    void applyColours() override;

private:
    wxStaticText* label_;
};

// kTextBox and kPasswordBox.
class TextBoxControl : public PageControl {
public:
    TextBoxControl(const ControlSite& site, const ControlSpec& spec);
    void setText(const wxString& text) override;
    wxString text() const override { return box_->GetValue(); }
    // Nobody reads a password.
    wxSize wordsSize() const override;

private:
    wxTextCtrl* box_;
};

class PictureControl : public PageControl {
public:
    PictureControl(const ControlSite& site, const ControlSpec& spec);
    bool isTabStop() const override { return false; }
    void setPicture(const Picture& picture) override;

protected:
    void applyColours() override;

private:
    wxStaticBitmap* picture_;
};

// kLine and kFrame.
class OrnamentControl : public PageControl {
public:
    OrnamentControl(const ControlSite& site, const ControlSpec& spec);
    bool isTabStop() const override { return false; }
};
