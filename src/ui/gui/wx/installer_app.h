#pragma once

#include <wx/app.h>
#include <wx/timer.h>

#include <atomic>
#include <memory>

#include "ui/gui/wx/event_sink.h"
#include "ui/gui/wx/page_controls.h"
#include "ui/gui/wx/page_frame.h"
#include "ui/gui/wx/work_loop.h"

// The application of the toolkit: its loop, its clock, and its frame.
class InstallerApp : public wxApp {
public:
    InstallerApp();

    bool OnInit() override { return true; }
    void OnAssertFailure(const wxChar* file, int line, const wxChar* function, const wxChar* condition,
                         const wxChar* message) override;
    // Keeps what a handler throws from the code of the system.
    bool OnExceptionInMainLoop() override { return true; }
    int FilterEvent(wxEvent& event) override;

    void run(ToolkitEvents& events);
    void processEvents();
    // From any thread.
    void wake();
    // Once, however often it is called.
    void reportLostDisplay();

    bool makeFrame(const FrameSpec& spec);
    void showFrame();
    // Ends the loop; the frame ends with it.
    void closeFrame();
    // Null when there is none (any more).
    PageFrame* frame() const { return isEnding_ ? nullptr : frame_; }
    PageControls& controls() { return controls_; }
    bool isRunning() const { return loop_ != nullptr; }

private:
    void onIdle(wxIdleEvent& event);
    void endFrame();

    EventSink events_;
    PageControls controls_{events_};
    ToolkitEvents* caller_ = nullptr;
    PageFrame* frame_ = nullptr;
    WorkLoop* loop_ = nullptr;
    wxTimer clock_;
    bool isLooping_ = false;
    bool isEnding_ = false;
    bool lossReported_ = false;
    int yields_ = 0;
    std::atomic<bool> acceptsWakes_ = false;
    std::atomic<bool> wakePending_ = false;
};
