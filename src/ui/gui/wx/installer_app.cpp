#include "ui/gui/wx/installer_app.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kSecond = 1000;  // ms

}  // namespace

InstallerApp::InstallerApp() {
    SetExitOnFrameDelete(false);
    Bind(wxEVT_IDLE, &InstallerApp::onIdle, this);
    clock_.Bind(wxEVT_TIMER,
                [this](wxTimerEvent&) { events_.report([](ToolkitEvents& events) { events.onTimer(); }); });
}

// Never the toolkit's own box. A test has this variable set, so that nothing that the toolkit complains about
// passes.
void InstallerApp::OnAssertFailure(const wxChar* file, int line, const wxChar* /*function*/,
                                   const wxChar* condition, const wxChar* message) {
    if (std::getenv("TANDREL_TOOLKIT_ASSERTS") != nullptr) {
        std::fprintf(stderr, "%ls:%d: %ls: %ls\n", file, line, condition, message == nullptr ? L"" : message);
        std::abort();
    }
}

int InstallerApp::FilterEvent(wxEvent& event) {
    PageFrame* const shown = frame();
    if (event.GetEventType() == wxEVT_CHAR_HOOK && loop_ != nullptr &&
        loop_->keepForLater(static_cast<const wxKeyEvent&>(event))) {
        return Event_Skip;
    }
    return shown != nullptr && shown->notice(event) ? Event_Processed : Event_Skip;
}

void InstallerApp::run(ToolkitEvents& events) {
    if (isRunning()) {
        return;
    }
    caller_ = &events;
    events_.attach(&events);
    isEnding_ = false;
    const std::unique_ptr<WorkLoop> loop = WorkLoop::make();
    loop_ = loop.get();
    acceptsWakes_ = true;
    // Events are handled while the caller starts, so the loop is the active one already.
    const wxEventLoopActivator activator(loop.get());
    clock_.Start(kSecond);
    if (events_.report([](ToolkitEvents& caller) { return caller.onStart(); }) && !isEnding_) {
        isLooping_ = true;
        loop->Run();
        isLooping_ = false;
    }
    acceptsWakes_ = false;
    clock_.Stop();
    events_.attach(nullptr);
    endFrame();
    loop_ = nullptr;
}

void InstallerApp::processEvents() {
    if (loop_ == nullptr) {
        return;
    }
    const ScopedCount yield(yields_);
    loop_->handleWaiting();
}

void InstallerApp::wake() {
    if (acceptsWakes_ && !display::isLost() && !wakePending_.exchange(true)) {
        CallAfter([this] {
            wakePending_ = false;
            events_.report([](ToolkitEvents& events) { events.onWake(); });
        });
    }
}

void InstallerApp::reportLostDisplay() {
    if (!lossReported_ && caller_ != nullptr) {
        lossReported_ = true;
        caller_->onDisplayLost();
    }
}

bool InstallerApp::makeFrame(const FrameSpec& spec) {
    if (frame_ != nullptr) {
        return false;
    }
    frame_ = new PageFrame(spec, events_, controls_, [this] { closeFrame(); });
    return true;
}

void InstallerApp::showFrame() {
    frame_->Show(true);
    frame_->Raise();
    CallAfter([this] { events_.report([](ToolkitEvents& events) { events.onFirstShow(); }); });
}

void InstallerApp::closeFrame() {
    if (isEnding_) {
        return;
    }
    isEnding_ = true;
    if (frame_ != nullptr) {
        frame_->Hide();
        display::flush();
    }
    if (isLooping_) {
        loop_->ScheduleExit();
    }
}

void InstallerApp::endFrame() {
    controls_.clear();
    controls_.destroyRetired();
    if (frame_ != nullptr) {
        frame_->Destroy();
        frame_ = nullptr;
        DeletePendingObjects();
    }
}

void InstallerApp::onIdle(wxIdleEvent& event) {
    event.Skip();
    if (yields_ > 0 || events_.isReporting() || isEnding_) {
        return;
    }
    controls_.destroyRetired();
    events_.report([](ToolkitEvents& events) { events.onIdle(); });
}
