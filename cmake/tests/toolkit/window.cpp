#include "window.h"

#include <wx/dirdlg.h>
#include <wx/gauge.h>
#include <wx/html/htmlwin.h>
#include <wx/listctrl.h>
#include <wx/richtext/richtextctrl.h>
#include <wx/statline.h>
#include <wx/wx.h>

#if wxUSE_ACCESSIBILITY
#include <wx/access.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "pictures.h"

namespace {

int failures = 0;

void expect(bool good, const char* what) {
    if (!good) {
        std::fprintf(stderr, "failed: %s\n", what);
        ++failures;
    }
}

// Gray, as colours lose a little in a JPEG even at its best quality.
std::vector<std::uint8_t> grayPicture() {
    return std::vector<std::uint8_t>(std::size_t{kPictureSize} * kPictureSize * 3, 128);
}

wxBitmap bitmapOf(const std::vector<std::uint8_t>& rgb) {
    wxImage image(kPictureSize, kPictureSize);
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        image.GetData()[i] = rgb[i];
    }
    return wxBitmap(image.Scale(64, 64));
}

class Lines : public wxListCtrl {
public:
    using wxListCtrl::wxListCtrl;

private:
    wxString OnGetItemText(long item, long /*column*/) const override {
        return wxString::Format("file %ld", item);
    }
};

class Window : public wxFrame {
public:
    Window() : wxFrame(nullptr, wxID_ANY, "Toolkit") {
        auto* pane = new wxScrolledWindow(this);
        pane->SetScrollRate(5, 5);
        auto* sizer = new wxBoxSizer(wxVERTICAL);
        addDocuments(pane, sizer);
        addPictures(pane, sizer);
        addFields(pane, sizer);
        pane->SetSizer(sizer);
        SetClientSize(640, 720);
        timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { look(); });
        html_->Bind(wxEVT_PAINT, [this](wxPaintEvent& event) {
            event.Skip();
            if (!timer_.IsRunning()) {
                timer_.StartOnce(100);
            }
        });
    }

private:
    void addDocuments(wxWindow* pane, wxSizer* sizer) {
        html_ = new wxHtmlWindow(pane, wxID_ANY, wxDefaultPosition, wxSize(600, 120));
        html_->SetPage("<h1>Agreement</h1><p>Some <b>text</b>.</p>");
        rich_ = new wxRichTextCtrl(pane, wxID_ANY, "", wxDefaultPosition, wxSize(600, 120));
        rich_->BeginBold();
        rich_->WriteText("Bold");
        rich_->EndBold();
        list_ = new Lines(pane, wxID_ANY, wxDefaultPosition, wxSize(600, 120), wxLC_REPORT | wxLC_VIRTUAL);
        list_->AppendColumn("Files");
        list_->SetItemCount(100000);
        sizer->Add(html_);
        sizer->Add(rich_);
        sizer->Add(list_);
    }

    void addPictures(wxWindow* pane, wxSizer* sizer) {
        const auto png = throughPng(grayPicture());
        const auto jpeg = throughJpeg(grayPicture());
        expect(png == grayPicture(), "a picture through PNG");
        expect(jpeg == grayPicture(), "a picture through JPEG");
        sizer->Add(new wxStaticBitmap(pane, wxID_ANY, bitmapOf(png)));
        sizer->Add(new wxStaticBitmap(pane, wxID_ANY, bitmapOf(jpeg)));
    }

    void addFields(wxWindow* pane, wxSizer* sizer) {
        const wxString choices[] = {"one", "two"};
        sizer->Add(new wxStaticText(pane, wxID_ANY, "Text"));
        sizer->Add(new wxStaticLine(pane));
        sizer->Add(new wxTextCtrl(pane, wxID_ANY, "text"));
        sizer->Add(new wxCheckBox(pane, wxID_ANY, "check"));
        sizer->Add(new wxRadioButton(pane, wxID_ANY, "radio"));
        sizer->Add(new wxListBox(pane, wxID_ANY, wxDefaultPosition, wxDefaultSize, 2, choices));
        sizer->Add(new wxComboBox(pane, wxID_ANY, "one", wxDefaultPosition, wxDefaultSize, 2, choices));
        sizer->Add(new wxGauge(pane, wxID_ANY, 100));
        sizer->Add(new wxButton(pane, wxID_OK, "OK"));
#if wxUSE_ACCESSIBILITY
        html_->SetAccessible(new wxWindowAccessible(html_));
#endif
    }

    // When the window has been drawn.
    void look() {
        expect(IsShownOnScreen(), "a frame on the screen");
        expect(html_->ToText().Contains("Some text"), "a page in the HTML window");
        expect(rich_->GetValue() == "Bold", "text in the rich text control");
        expect(list_->GetItemCount() == 100000, "a list of many lines");
        // They are linked in, but modal.
        wxDirDialog directory(this, "Directory");
        wxMessageDialog message(this, "Message");
        Close();
    }

    wxHtmlWindow* html_ = nullptr;
    wxRichTextCtrl* rich_ = nullptr;
    wxListCtrl* list_ = nullptr;
    wxTimer timer_;
};

class App : public wxApp {
public:
    // Instead of a box that waits for an answer.
    void OnAssertFailure(const wxChar* /*file*/, int /*line*/, const wxChar* /*function*/,
                         const wxChar* condition, const wxChar* message) override {
        expect(false, (wxString(condition) + ": " + message).utf8_str());
    }

    bool OnInit() override {
        (new Window)->Show();
        return true;
    }
};

// Exceptions work on both sides of a module's border, and stay there.
bool catchesExceptions() {
    try {
        throw std::runtime_error("thrown");
    } catch (const std::exception& error) {
        return wxString(error.what()) == "thrown";
    }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int showWindow() {
    expect(catchesExceptions(), "an exception");
    wxApp::SetInstance(new App);
    int count = 0;
    if (!wxEntryStart(count, static_cast<wxChar**>(nullptr))) {
        std::fprintf(stderr, "failed: no display\n");
        return 1;
    }
    expect(wxTheApp->CallOnInit(), "the start");
    wxTheApp->OnRun();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return failures;
}
