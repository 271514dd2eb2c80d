#pragma once

#include <iterator>
#include <string>
#include <string_view>

// How a run can end. With the option `exitCodes` the number is the program's exit code;
// docs/manual/running.md describes each, and none ever changes its meaning.
enum class RunEnd : int {
    kDone = 0,
    kNotStarted = 1,
    kAnotherRun = 2,
    kNotRecovered = 3,
    kNothingToDo = 4,
    kRestartWanted = 5,
    kCancelled = 6,
    kRefused = 7,
    kProgramRuns = 8,
    kNoRights = 9,
    kNoSpace = 10,
    kPackageDamaged = 11,
    kBadAnswers = 12,
    kTakenBack = 13,
    kFailed = 14,
    kBadCommandLine = 15,
    kNoFrontEnd = 16,
};

struct RunEndRow {
    RunEnd end;
    std::string_view name;     // a word for records
    std::string_view meaning;  // one line without a full stop
};

inline constexpr RunEndRow kRunEnds[] = {
    {RunEnd::kDone, "done", "everything was done"},
    {RunEnd::kNotStarted, "not-started", "the run could not start, or its work could not begin"},
    {RunEnd::kAnotherRun, "another-run", "another run is at work"},
    {RunEnd::kNotRecovered, "not-recovered", "an interrupted run was not taken back"},
    {RunEnd::kNothingToDo, "nothing-to-do", "there was nothing to do"},
    {RunEnd::kRestartWanted, "restart-wanted", "everything was done, and the system is to be restarted"},
    {RunEnd::kCancelled, "cancelled", "the run was cancelled"},
    {RunEnd::kRefused, "refused", "a page held or ended the run before its work"},
    {RunEnd::kProgramRuns, "program-runs", "a running program held the run before its work"},
    {RunEnd::kNoRights, "no-rights", "the rights of an administrator are missing"},
    {RunEnd::kNoSpace, "no-space", "there is too little space on a volume"},
    {RunEnd::kPackageDamaged, "package-damaged", "the package is damaged, unusable or missing"},
    {RunEnd::kBadAnswers, "bad-answers", "the file of answers can't be used"},
    {RunEnd::kTakenBack, "taken-back", "something failed, and all changes were taken back"},
    {RunEnd::kFailed, "failed", "something failed, and what was changed until then stays"},
    {RunEnd::kBadCommandLine, "bad-command-line", "the command line can't be parsed"},
    {RunEnd::kNoFrontEnd, "no-front-end", "there is neither a window nor a terminal"},
};

// The row of an end, by its number.
constexpr const RunEndRow& rowOf(RunEnd end) {
    return kRunEnds[static_cast<std::size_t>(end)];
}

// How a run ended, as those note it who know: the first reason is the one that counts. For the session's
// thread.
class RunOutcome {
public:
    // The run doesn't end well. `why` names what it was about, such as a page; it may be empty.
    void note(RunEnd end, std::string_view why = {});
    // A program that the run started asks for a restart of the system.
    void noteRestart() { isRestartWanted_ = true; }
    // Everything is again as it was before the failure.
    void noteTakenBack();
    // What another one knows, after what this one does.
    void add(const RunOutcome& later);

    // kDone without a reason, or kRestartWanted.
    RunEnd end() const;
    const std::string& why() const { return why_; }
    // The number of end(). A run without a reason that failed all the same (`usual` isn't 0) has not started.
    int exitCode(int usual) const;

private:
    RunEnd end_ = RunEnd::kDone;
    std::string why_;
    bool isRestartWanted_ = false;
};
