#pragma once

#include <string>
#include <vector>

class InstallerUI;

// The errors of a session that didn't end it, as texts of at most 1,559 bytes.
using ErrorList = std::vector<std::string>;

// What a long piece of work tells: to the front end, if there is one, and to the list of errors, if there is
// one.
class Report {
public:
    // Each may be null, and outlives this object.
    Report(InstallerUI* ui, ErrorList* errors) : ui_(ui), errors_(errors) {}

    InstallerUI* ui() const { return ui_; }
    bool hasErrorList() const { return errors_ != nullptr; }

    void begin();
    void end();
    void setStatus(const char* text);
    void setProgress(int percent);
    // Both give the front end time to handle its events; the second is for the loop that copies files.
    void pumpEvents();
    void pumpEventsWhileCopying();
    void addLine(const std::string& text, bool flushNow);
    void flushLines();
    void addError(const std::string& text);
    // The line that says what became of a change: added without a flush, and an error too when it failed.
    // Gives `done` back.
    bool addOutcome(bool done, const std::string& text);
    // Shows the list of errors, if it holds any, under a heading.
    void showErrors(const char* heading);
    // False without a front end.
    bool ignoresErrors();

private:
    InstallerUI* ui_;
    ErrorList* errors_;
};
