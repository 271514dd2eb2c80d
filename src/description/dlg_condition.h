#pragma once

#include <string>
#include <vector>

class InstallerUI;
class SystemOperations;

// What holds the user on a page. Made when a page is first entered.
class DlgCondition {
public:
    virtual ~DlgCondition() = default;
    // Non-zero when the way forward is free.
    virtual int evaluate(SystemOperations* system, InstallerUI* ui) = 0;
    // Adds a line to the user's file list; nothing happens when one of both is null.
    virtual void report(SystemOperations* system, InstallerUI* ui, const char* text);
};

// Free when none of the listed processes runs.
class RunningAppsCondition : public DlgCondition {
public:
    // `directory` may be null or empty: a process from anywhere counts.
    void add(const char* process, const char* directory);
    void clear() { entries_.clear(); }

    // Keeps the list on screen up to date: it is rebuilt when it differs from what runs. 1 without system or
    // front end.
    int evaluate(SystemOperations* system, InstallerUI* ui) override;

private:
    struct Entry {
        std::string process;
        std::string directory;
        bool shown = false;
        bool running = false;
    };
    void showRunning(InstallerUI& ui);

    std::vector<Entry> entries_;
};

// Free when none of the listed applications is registered any more.
class ExternalInstallationCondition : public DlgCondition {
public:
    // `in32BitView`: the applications are looked for in the view of 32-bit programs.
    explicit ExternalInstallationCondition(bool in32BitView = false) : in32BitView_(in32BitView) {}
    void add(const char* applicationName);
    void setIn32BitView(bool in32BitView) { in32BitView_ = in32BitView; }
    bool isEmpty() const { return names_.empty(); }

    // 1 without system or front end, and with an empty list.
    int evaluate(SystemOperations* system, InstallerUI* ui) override;

private:
    std::vector<std::string> names_;
    bool in32BitView_;
};
