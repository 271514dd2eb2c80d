#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "support/debug_log.h"
#include "ui/console/pager.h"
#include "ui/console/progress_line.h"
#include "ui/console/user_input.h"
#include "ui/generic_ui.h"

struct DialogElementDesc;

// The text front end: prints the elements of each page once, asks one question for each field, and steps
// forward until the session is over. It never goes back.
class ConsoleUI : public GenericUI {
public:
    // The bytes that are kept of a status text.
    static constexpr std::size_t kStatusTextLimit = 4096;

    // `terminal` and `answers` outlive this object. The log gets what the user isn't shown: broken documents
    // and the loss of the terminal.
    ConsoleUI(bool uninstall, bool ignoreErrors, bool quiet, platform::ConsoleDevice& terminal,
              AnswersFile& answers, DebugLog debugLog);
    ~ConsoleUI() override;

    // Before the provider of answers is made: see User. `environment` outlives this object.
    void understandDirectories(platform::Environment& environment) { environment_ = &environment; }

    // 0, the walk's error, or -1 when nobody was left to answer a question or no engine is attached.
    int run() override;
    int finish() override;
    int showDialog(int dialog) override;
    int showSubDialog(int dialog, int sub) override;
    int updateNavigationState() override { return 0; }
    int refreshDialog(int, int, std::uint32_t, bool) override { return 0; }
    int refreshFields(int, int) override { return 0; }
    int refreshElements() override { return 0; }
    void showPage(int, int, bool) override {}
    int prepareDialog(int) override { return 0; }
    void prepareSubDialog(int, int) override {}
    int leaveDialog(int) override { return 0; }
    void leaveSubDialog(int, int) override {}
    void clearTaskList() override {}
    void destroySubPage() override {}
    void keepElement(const char*) override {}
    // Refuses while the installation runs or the installer is busy.
    int confirmCancel() override;
    void enableDisableable(bool) override {}
    void pumpEvents() override {}
    void setCurrentProgress(int percent) override { currentProgress_ = percent; }
    // At a terminal a line while a large file is written, and nothing in a quiet run.
    void setFileProgress(std::int64_t done, std::int64_t total) override;
    // Status lines are no longer printed until the line is blanked.
    void setOverallProgress(int percent) override;
    // One line feed at the end is cut; null counts as empty.
    void setStatusText(const char* text) override;
    int pumpEventsWhileCopying() override { return 0; }
    void addFileLine(const char* text, bool flushNow) override;
    void clearFileLines() override {}
    void addMessage(std::string_view text) override;
    // A message that only informs gives 0; an interrupted question counts as an agreement.
    int messageBox(const char* text, MessageKind kind) override;
    int beginProgress() override;
    int endProgress() override;
    int isGraphical() override { return 0; }
    bool isQuiet() override { return quiet_; }
    void setTaskState(const char*, const char*, std::int32_t) override {}

    // Asks the fields of a page in their order. -1 without an engine or a provider of answers, else 0.
    virtual int processFields(int dialog, int sub);
    virtual int processFields(int dialog);

    const std::string& getStatusText() const { return statusText_; }
    int getCurrentProgress() const { return currentProgress_; }
    int getOverallProgress() const { return overallProgress_; }

protected:
    std::unique_ptr<InputProvider> makeUser(bool uninstall) override;

private:
    void waitForCondition();
    void showBanner();
    void sayInstead(const char* text, MessageKind kind);
    void loseDialogue(DialogueLoss loss);
    int refuseCancel(std::string_view line);
    bool isCancelled() const;
    void selectPage(int dialog, int sub);
    void showElement(const DialogElementDesc& element, bool wasActive);
    bool isShown(const DialogElementDesc& element) const;
    void showText(const DialogElementDesc& element, bool wasActive);
    void showRichText(const DialogElementDesc& element, bool wasActive);
    void showPlainText(const DialogElementDesc& element, bool wasActive);
    void showHtml(const DialogElementDesc& element, bool wasActive);
    void skipElement();
    void showDocument(const DialogElementDesc& element, bool wasActive);
    void printDocument(const DialogElementDesc& element);
    int readColumns();
    void pause(std::string_view text);
    PageTurn turnPage(std::string_view text);
    void blankLine();
    void printLine(std::string_view text);
    int askBox(const char* text, WordKey first, WordKey second, bool prefixOfExactCase);

    const bool quiet_;
    platform::Environment* environment_ = nullptr;
    DebugLog debugLog_;
    bool statusActive_ = false;
    int currentProgress_ = 0;
    int overallProgress_ = 0;
    std::string statusText_;
    Pager pager_;
    ProgressLine fileProgress_;

    int lastDialog_ = -1;
    int lastSub_ = -1;
    // Counts printed elements, not positions: a page that is shown again starts after as many elements as
    // were printed the first time.
    int printedCount_ = 0;
    bool dialogHasGate_ = false;

    std::atomic<bool> cancelConfirmed_{false};  // written by the thread of the interrupt
    // Written by the session's thread, read where a cancel is confirmed.
    std::atomic<bool> losingDialogue_{false};
    bool dialogueLost_ = false;
};
