#include "ui/gui/wx/wx_toolkit.h"

#include <wx/dirdlg.h>
#include <wx/icon.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/msgdlg.h>
#include <wx/settings.h>

#include <algorithm>
#include <type_traits>

#include "ui/gui/wx/accessibility.h"
#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/display.h"
#include "ui/gui/wx/native_look.h"
#include "ui/gui/wx/plain_controls.h"

namespace {

long styleOf(MessageButtons buttons, MessageSign sign) {
    long style = wxCENTRE;
    switch (buttons) {
        case MessageButtons::kOk:
            style |= wxOK;
            break;
        case MessageButtons::kOkCancel:
            style |= wxOK | wxCANCEL;
            break;
        case MessageButtons::kYesNo:
            style |= wxYES_NO;
            break;
    }
    switch (sign) {
        case MessageSign::kNone:
            return style | wxICON_NONE;
        case MessageSign::kInformation:
            return style | wxICON_INFORMATION;
        case MessageSign::kError:
            return style | wxICON_ERROR;
    }
    return style;
}

std::int32_t numberOf(const wxColour& colour) {
    return static_cast<std::int32_t>(colour.GetRGB());
}

}  // namespace

template <typename Work>
void WxToolkit::use(Work work) {
    const bool isDone = display::use([&] {
        try {
            work();
        } catch (...) {
            // What can't be shown is not shown.
        }
    });
    if (!isDone) {
        app_->reportLostDisplay();
    }
}

template <typename Action>
auto WxToolkit::guarded(Action action) -> decltype(action()) {
    using Result = decltype(action());
    if constexpr (std::is_void_v<Result>) {
        if (works()) {
            use(action);
        }
    } else {
        Result result = Result();
        if (works()) {
            use([&] { result = action(); });
        }
        return result;
    }
}

template <typename Action>
auto WxToolkit::withFrame(Action action) {
    using Result = decltype(action(std::declval<PageFrame&>()));
    return guarded([&] {
        PageFrame* const frame = app_->frame();
        return frame == nullptr ? Result() : action(*frame);
    });
}

template <typename Action>
auto WxToolkit::withControl(ControlId id, Action action) {
    using Result = decltype(action(std::declval<PageControl&>()));
    return guarded([&] {
        PageControl* const control = app_->controls().find(id);
        return control == nullptr ? Result() : action(*control);
    });
}

bool WxToolkit::works() const {
    return app_ != nullptr && app_->isRunning() && !display::isLost();
}

bool WxToolkit::open(TextReceiver& outReason) {
    if (!opened_) {
        opened_ = false;
        reason_ = "the window system can't be started";
        display::use([this] {
            try {
                opened_ = start(reason_);
            } catch (...) {
                // The reason stands already.
            }
        });
    }
    if (!*opened_) {
        outReason.take(reason_);
    }
    return *opened_;
}

bool WxToolkit::start(std::string& outReason) {
    if (!display::open(outReason)) {
        return false;
    }
    wxLog::EnableLogging(false);
    native_look::prepare();
    app_ = new InstallerApp;
    wxApp::SetInstance(app_);
    int count = 0;
    if (!wxEntryStart(count, static_cast<wxChar**>(nullptr)) || !app_->CallOnInit()) {
        app_ = nullptr;
        return false;
    }
    return true;
}

void WxToolkit::run(ToolkitEvents& events) {
    if (app_ == nullptr || app_->isRunning() || display::isLost()) {
        return;
    }
    use([&] { app_->run(events); });
}

void WxToolkit::processEvents() {
    guarded([&] { app_->processEvents(); });
}

void WxToolkit::wake() {
    try {
        if (app_ != nullptr) {
            app_->wake();
        }
    } catch (...) {
        // Without memory for the note of it the next timer has to do.
    }
}

Extent WxToolkit::measureText(std::string_view text) {
    return guarded([&] {
        const wxSize size = native_look::sizeOf(wideText(text));
        return Extent{size.x, size.y};
    });
}

double WxToolkit::pixelDensity() {
    return std::max(1.0, guarded([] { return display::density(); }));
}

std::int32_t WxToolkit::pageColour() {
    return guarded([] { return numberOf(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE)); });
}

bool WxToolkit::showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                            MessageSign sign) {
    return guarded([&] {
        wxMessageDialog box(app_->frame(), wideText(text), wideText(caption), styleOf(buttons, sign));
        const int answer = box.ShowModal();
        return answer == wxID_OK || answer == wxID_YES;
    });
}

bool WxToolkit::chooseDirectory(std::string_view title, std::string_view start, TextReceiver& chosen) {
    return guarded([&] {
        wxDirDialog box(app_->frame(), wideText(title), wideText(start), wxDD_DEFAULT_STYLE,
                        wxDefaultPosition, wxDefaultSize, "wxDirCtrl");
        const bool isChosen = box.ShowModal() == wxID_OK;
        if (isChosen) {
            handOver(box.GetPath(), chosen);
        }
        return isChosen;
    });
}

bool WxToolkit::makeFrame(const FrameSpec& spec) {
    return guarded([&] { return app_->makeFrame(spec); });
}

void WxToolkit::setIcon(const Picture& icon) {
    withFrame([&](PageFrame& frame) {
        const wxBitmap bitmap = bitmapOf(icon, 1.0);
        if (bitmap.IsOk()) {
            wxIcon shown;
            shown.CopyFromBitmap(bitmap);
            frame.SetIcon(shown);
        }
    });
}

void WxToolkit::showFrame() {
    withFrame([&](PageFrame&) { app_->showFrame(); });
}

void WxToolkit::closeFrame() {
    guarded([&] { app_->closeFrame(); });
}

void WxToolkit::setClientSize(Extent size) {
    withFrame([=](PageFrame& frame) { frame.setPageSize(size); });
}

Extent WxToolkit::clientSize() {
    return withFrame([](const PageFrame& frame) { return frame.pageSize(); });
}

void WxToolkit::setPageColours(std::int32_t foreground, std::int32_t background) {
    withFrame([=](PageFrame& frame) { frame.setPageColours(foreground, background); });
}

bool WxToolkit::isActive() {
    return withFrame([](PageFrame& frame) { return frame.IsActive(); });
}

void WxToolkit::setAccessKeys(std::span<const AccessKey> keys) {
    withFrame([=](PageFrame& frame) { frame.setAccessKeys(keys); });
}

void WxToolkit::showAccessKeys(bool show) {
    withFrame([=](PageFrame& frame) { frame.showAccessKeys(show); });
}

void WxToolkit::setDefaultButton(ControlId button) {
    withFrame([&](PageFrame& frame) {
        const PageControl* const control = app_->controls().find(button);
        auto* const window = control == nullptr ? nullptr : dynamic_cast<wxButton*>(control->window());
        if (window != nullptr) {
            window->SetDefault();
        } else {
            frame.SetDefaultItem(nullptr);
        }
    });
}

void WxToolkit::beginChanges() {
    withFrame([](PageFrame& frame) { frame.panel().Freeze(); });
}

void WxToolkit::endChanges() {
    withFrame([](PageFrame& frame) {
        if (frame.panel().IsFrozen()) {
            frame.panel().Thaw();
        }
    });
}

void WxToolkit::redraw() {
    withFrame([](PageFrame& frame) { frame.drawNow(); });
}

bool WxToolkit::drawPage(PictureReceiver& outPicture) {
    return withFrame([&](PageFrame& frame) { return native_look::draw(frame.panel(), outPicture); });
}

void WxToolkit::announce(std::string_view text) {
    withFrame([=](PageFrame& frame) { accessibility::announce(frame, wideText(text)); });
}

ControlId WxToolkit::add(const ControlSpec& spec) {
    return withFrame([&](PageFrame&) { return app_->controls().add(spec); });
}

void WxToolkit::remove(ControlId control) {
    guarded([&] { app_->controls().remove(control); });
}

void WxToolkit::setPlace(ControlId control, Place place) {
    withControl(control, [=](PageControl& found) { found.setPlace(place); });
}

Place WxToolkit::place(ControlId control) {
    return withControl(control, [](const PageControl& found) { return found.place(); });
}

Extent WxToolkit::wordsSize(ControlId control) {
    return withControl(control, [](const PageControl& found) {
        const wxSize size = found.wordsSize();
        return Extent{size.x, size.y};
    });
}

void WxToolkit::show(ControlId control, bool show) {
    withControl(control, [=](const PageControl& found) { found.window()->Show(show); });
}

bool WxToolkit::isShown(ControlId control) {
    return withControl(control, [](const PageControl& found) { return found.window()->IsShown(); });
}

void WxToolkit::enable(ControlId control, bool enable) {
    withControl(control, [=](const PageControl& found) { found.window()->Enable(enable); });
}

bool WxToolkit::isEnabled(ControlId control) {
    return withControl(control, [](const PageControl& found) { return found.window()->IsThisEnabled(); });
}

void WxToolkit::setFocus(ControlId control) {
    withControl(control, [](PageControl& found) { found.takeFocus(); });
}

ControlId WxToolkit::focused() {
    return withFrame([&](PageFrame&) {
        const PageControl* const control = app_->controls().focused();
        return control == nullptr ? 0 : control->id();
    });
}

void WxToolkit::setColours(ControlId control, const ControlColours& colours) {
    withControl(control, [&](PageControl& found) { found.setColours(colours); });
}

void WxToolkit::setToolTip(ControlId control, std::string_view text) {
    withControl(control, [=](const PageControl& found) { found.window()->SetToolTip(wideText(text)); });
}

void WxToolkit::setLabel(ControlId control, ControlId label) {
    withControl(control, [&](const PageControl& named) {
        withControl(label, [&](const PageControl& naming) {
            // What has a caption is named by that.
            const auto* const captioned = dynamic_cast<const wxControl*>(named.window());
            const bool hasName = captioned != nullptr && !captioned->GetLabel().empty();
            accessibility::setLabel(*named.window(), *naming.window(), hasName ? wxString() : naming.text());
        });
    });
}

void WxToolkit::setText(ControlId control, std::string_view text) {
    withControl(control, [=](PageControl& found) { found.setText(wideText(text)); });
}

void WxToolkit::text(ControlId control, TextReceiver& outText) {
    withControl(control, [&](const PageControl& found) { handOver(found.text(), outText); });
}

void WxToolkit::appendText(ControlId control, std::string_view text) {
    withControl(control, [=](PageControl& found) { found.appendText(wideText(text)); });
}

void WxToolkit::setChecked(ControlId control, bool checked) {
    withControl(control, [=](PageControl& found) { found.setChecked(checked); });
}

bool WxToolkit::isChecked(ControlId control) {
    return withControl(control, [](const PageControl& found) { return found.isChecked(); });
}

void WxToolkit::setProgress(ControlId control, int percent) {
    withControl(control, [=](PageControl& found) { found.setProgress(std::clamp(percent, 0, 100)); });
}

void WxToolkit::setPicture(ControlId control, const Picture& picture) {
    withControl(control, [&](PageControl& found) { found.setPicture(picture); });
}

void WxToolkit::setHtml(ControlId control, std::string_view page) {
    withControl(control, [=](PageControl& found) { found.setHtml(wideText(page)); });
}

void WxToolkit::setRichText(ControlId control, std::span<const RichTextCommand> commands) {
    withControl(control, [=](PageControl& found) { found.setRichText(commands); });
}

void WxToolkit::setTaskIcons(ControlId control, Extent size, std::span<const Picture> icons) {
    withControl(control, [=](PageControl& found) { found.setTaskIcons(size, icons); });
}

void WxToolkit::addTask(ControlId control, const TaskRow& row) {
    withControl(control, [&](PageControl& found) { found.addTask(row); });
}

void WxToolkit::setTask(ControlId control, int index, const TaskRow& row) {
    withControl(control, [&](PageControl& found) { found.setTask(index, row); });
}
