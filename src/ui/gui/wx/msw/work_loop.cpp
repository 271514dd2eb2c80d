#include "ui/gui/wx/work_loop.h"

#include <windows.h>

#include <wx/app.h>

#include <optional>
#include <utility>

namespace {

// wxWidgets reports keys from a hook of the system, which is called before the key has left the queue.
class WindowsWorkLoop : public WorkLoop {
public:
    void handleWaiting() override { YieldFor(wxEVT_CATEGORY_ALL); }

    bool keepForLater(const wxKeyEvent& key) override {
        if (std::exchange(isTaken_, false)) {
            return false;
        }
        kept_ = key;
        return true;
    }

    bool PreProcessMessage(WXMSG* message) override {
        return (isKept(*message) && isHandled()) || WorkLoop::PreProcessMessage(message);
    }

private:
    bool isKept(const MSG& message) const {
        const bool isKey = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
        return isKey && kept_ && kept_->GetRawKeyCode() == message.wParam;
    }

    bool isHandled() {
        wxKeyEvent key(*kept_);
        kept_.reset();
        isTaken_ = true;
        return wxTheApp->FilterEvent(key) == wxEventFilter::Event_Processed;
    }

    std::optional<wxKeyEvent> kept_;
    bool isTaken_ = false;
};

}  // namespace

std::unique_ptr<WorkLoop> WorkLoop::make() {
    return std::make_unique<WindowsWorkLoop>();
}
