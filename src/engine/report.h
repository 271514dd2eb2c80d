#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class InstallerUI;

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
    void setProgress(int percent);
    // Both give the front end time to handle its events; the second is for the loop that copies files.
    void pumpEvents();
    void pumpEventsWhileCopying();
    void addLine(std::string_view text, bool flushNow);
    void flushLines();
    void addError(std::string_view text);
    // The line that says what became of a change: added without a flush, and an error too when it failed.
    // Gives `done` back.
    bool addOutcome(bool done, std::string_view text);
    // Shows the list of errors, if it holds any, under a heading.
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
    std::int64_t expectedSteps_ = 0;
    std::int64_t finishedSteps_ = 0;
};
