#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "support/debug_log.h"
#include "ui/generic_ui.h"
#include "ui/gui/images/slide_choice.h"
#include "ui/gui/toolkit/toolkit.h"
#include "ui/gui/toolkit/toolkit_events.h"

enum DialogElementKind : std::int32_t;
class MainFrame;
class PagePictures;
namespace platform {
class FileSystem;
}

// The front end with windows, for any toolkit: the pages of the session in one frame. An exception of the
// session never enters the toolkit: it is kept, ends the loop, and leaves `run`.
class WxGUI : public GenericUI, private ToolkitEvents {
public:
    struct Surroundings {
        Toolkit& toolkit;
        platform::ConsoleDevice& terminal;
        AnswersFile& answers;
        platform::FileSystem& files;
        // Milliseconds since some moment.
        std::function<std::uint64_t()> clock;
        SlideChoice::RandomNumbers random;
    };

    // All surroundings outlive this object, which is made on the thread that calls `run`. An error isn't
    // ignored in a window: somebody is there to see it.
    WxGUI(bool uninstall, const Surroundings& surroundings, DebugLog debugLog);
    ~WxGUI() override;

    // Shows the window until the session is over. 0; -1 without an engine or a window.
    int run() override;
    int finish() override { return 0; }
    int showDialog(int dialog) override;
    int showSubDialog(int dialog, int sub) override;
    int updateNavigationState() override;
    int refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) override;
    int refreshFields(int dialog, int sub) override;
    int refreshElements() override;
    void showPage(int dialog, int sub, bool show) override;
    int prepareDialog(int dialog) override;
    void prepareSubDialog(int dialog, int sub) override;
    int leaveDialog(int dialog) override;
    void leaveSubDialog(int dialog, int sub) override;
    void clearTaskList() override;
    void destroySubPage() override;
    void keepElement(const char* name) override;
    // On another thread than that of `run` nobody can be asked at once: the window's thread asks as soon as
    // it can, and the result is 0.
    int confirmCancel() override;
    void enableDisableable(bool enable) override;
    void pumpEvents() override;
    void setCurrentProgress(int percent) override;
    void setOverallProgress(int percent) override;
    void setStatusText(const char* text) override;
    int pumpEventsWhileCopying() override;
    void addFileLine(const char* text, bool flushNow) override;
    void clearFileLines() override;
    // A page without a list keeps it for the next one that has one.
    void addMessage(std::string_view text) override;
    int messageBox(const char* text, MessageKind kind) override;
    int beginProgress() override { return 0; }
    int endProgress() override { return 0; }
    int isGraphical() override { return 1; }
    bool isQuiet() override { return false; }
    void setTaskState(const char* name, const char* text, std::int32_t state) override;
    void showHelp() override;
    // The first message stays.
    void setFatalMessage(const char* text, const char* caption) override;
    void showFatalMessage() override;

protected:
    // The pages of a window ask by themselves.
    std::unique_ptr<InputProvider> makeUser(bool) override { return nullptr; }

private:
    struct FatalMessage {
        std::string text;
        std::string caption;
    };

    bool onStart() override;
    void onFirstShow() override;
    void onActivate(bool isActive) override;
    void onIdle() override;
    void onTimer() override;
    bool onClose() override;
    void onPress(ControlId control) override;
    bool onEnter(bool boxUsesEnter) override;
    void onAltKey() override;
    void onText(ControlId control) override;
    void onFocus(ControlId) override {}
    void onNavigate(bool) override {}
    void onWake() override;
    void onDisplayLost() override;

    // What the session wants of the frame: 0, or -1 while there is none.
    template <typename Work>
    int onFrame(Work&& work);
    // What the toolkit reports.
    template <typename Work>
    void guard(Work&& work);
    bool start();
    ControlId find(std::string_view name, DialogElementKind kind) const;
    void setProgress(std::string_view name, int percent);
    void flushFileLines();
    void showMessages();
    bool ask(std::string_view text, std::string_view caption, MessageButtons buttons, MessageSign sign);
    bool isAtWork() const;
    void cancelIfWanted();
    void endWithoutWindow();

    Surroundings surroundings_;
    DebugLog debugLog_;
    std::unique_ptr<PagePictures> pictures_;
    std::unique_ptr<MainFrame> frame_;
    std::optional<FatalMessage> fatalMessage_;
    std::exception_ptr exception_;
    std::string fileLines_;  // not shown yet
    std::string messages_;   // without a list to show them in
    std::uint64_t lastPump_ = 0;
    bool isWindowLost_ = false;
    const std::thread::id windowThread_ = std::this_thread::get_id();
    // Set by any thread.
    std::atomic<bool> isCancelWanted_{false};
};
