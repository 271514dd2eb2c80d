#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "description/wizard_words.h"

class InstallerUI;
class OverallProgress;
enum class JobStage;

// The errors of a session that didn't end it, as texts of at most 1,559 bytes.
using ErrorList = std::vector<std::string>;

// What a job says while it works: to the front end, if there is one, and to the session's list of errors, if
// there is one. Made once for each job.
class Report {
public:
    // Lists of steps are flushed to the screen after so many lines.
    static constexpr std::int64_t kStepsPerFlush = 32;

    // Each may be null, and outlives this object.
    Report(InstallerUI* ui, ErrorList* errors) : ui_(ui), errors_(errors) {}

    InstallerUI* ui() const { return ui_; }

    void begin();
    void end();
    void setStatus(std::string_view text);
    // A status of the wizard itself, in its words or the description's.
    void setStatusWord(WordKey status);
    // The description's words; null for the default ones. They outlive this object.
    void setWords(const WizardWords* words) { words_ = words; }
    void setProgress(int percent);
    // Of the file that is being written, in bytes. Has the front end handle events as well.
    void setFileProgress(std::int64_t done, std::int64_t total);
    // The progress of the whole job, if anybody looks at it; null at first, and outlives this object.
    // setProgress gives it the share of the present stage.
    void setOverall(OverallProgress* overall) { overall_ = overall; }
    OverallProgress* overall() const { return overall_; }
    // See OverallProgress.
    void beginStage(JobStage stage);
    void advance(std::int64_t weight);
    // Both give the front end time to handle its events; the second is for the loop that copies files.
    void pumpEvents();
    void pumpEventsWhileCopying();
    // Gives the result of `work`. If there is a window, `work` runs on another thread while this one has the
    // window's events handled, which must not touch what `work` uses. For calls in which the system takes its
    // time.
    int pumpEventsDuring(const std::function<int()>& work);
    void addLine(std::string_view text, bool flushNow);
    void flushLines();
    void addError(std::string_view text);
    // The line that says what became of a change: added without a flush, and an error too when it failed.
    // Gives `done` back.
    bool addOutcome(bool done, std::string_view text);
    // A message that has no place in the fixed form of the output: to standard error, in a window into its
    // list. One line without an end. Shown in a quiet run as well.
    void note(std::string_view text);
    // Hands each later note to `receiver` as well: for a job that works before there is a window.
    void copyNotesTo(std::function<void(std::string_view)> receiver) { noteReceiver_ = std::move(receiver); }
    // Says why a step failed, right after the line that says that it did: a note with what it was about (a
    // path, most often, shown as the system writes it) and the system's words for `status`
    // (platform/error_text.h). A status of 0 says nothing. Once for each failure, so only where the failure
    // is reported.
    void addReason(std::string_view subject, int status);
    void addRegistryReason(std::string_view subject, int status);
    // The same for the status of a write, which is -1 where something else than a file is in its place.
    void addFileReason(std::string_view path, int status);
    // For a reason that isn't the system's.
    void addReason(std::string_view subject, std::string_view reason);
    // For one that may not be known: an empty one says nothing. The subject is shown as it is.
    void addKnownReason(std::string_view subject, std::string_view reason);
    // Shows the list of errors under a heading; the heading also when the list is empty, but not without a
    // list.
    void showErrors(std::string_view heading);
    // False without a front end.
    bool ignoresErrors();

    // Progress in equal steps, for jobs that learn on the way how many there are. Finishing one shows the
    // share of those that were finished before.
    void expectSteps(std::int64_t count) { expectedSteps_ += count; }
    void finishStep();
    // True for every kStepsPerFlush-th step, from the first one on.
    bool isFlushDue() const { return finishedSteps_ % kStepsPerFlush == 0; }

private:
    InstallerUI* ui_;
    ErrorList* errors_;
    const WizardWords* words_ = nullptr;
    OverallProgress* overall_ = nullptr;
    std::function<void(std::string_view)> noteReceiver_;
    std::int64_t expectedSteps_ = 0;
    std::int64_t finishedSteps_ = 0;
};
