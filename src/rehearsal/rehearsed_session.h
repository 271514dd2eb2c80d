#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "description/answers_file.h"
#include "rehearsal/rehearsed_machine.h"
#include "support/debug_log.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

class GenericUI;

// A session of the real engine on a rehearsed machine, without its front end. Waits take no time.
class RehearsedSession {
public:
    // What a session is about.
    struct Source {
        std::string path;         // on the machine: the package, or the action log
        std::int64_t offset = 0;  // of the package in that file
        bool isUninstallation = false;
        bool keepsBackup = true;
        std::string answers;  // path on the machine; empty: every default
    };

    // The machine is borrowed.
    RehearsedSession(RehearsedMachine& machine, const DebugLog& log, const WiniArguments& arguments);
    ~RehearsedSession();
    RehearsedSession(const RehearsedSession&) = delete;
    RehearsedSession& operator=(const RehearsedSession&) = delete;

    // To be called once, before `run`. Empty, or why the source can't be loaded.
    std::string load(const Source& source);
    // Everything from the description to the end of the walk, as Installer::run; `log` gets its debug log.
    // Both are borrowed.
    int run(GenericUI& frontEnd, PConsole& log);
    // Everything was done, and nothing failed on the way. `status` is what `run` gave.
    bool hasSucceeded(int status);

    Wini& engine() { return session_; }
    AnswersFile& answers() { return answers_; }
    const std::vector<std::string>& errors() const { return session_.errors(); }
    VariableStore& variables() { return session_.variables(); }
    // The name of the page on which the walk is; empty before it.
    std::string page() { return session_.page(); }

private:
    // A session that shows what it knows.
    class OpenSession : public Wini {
    public:
        using Wini::Wini;

        const std::vector<std::string>& errors() const { return errorList; }
        VariableStore& variables() { return model().variables.store(); }
        std::string page();
    };

    RehearsedSession(RehearsedMachine& machine, const DebugLog& log, const WiniArguments& arguments,
                     const ServiceClock& clock);

    SystemServices services_;
    AnswersFile answers_;
    NestedSessions nested_;
    OpenSession session_;
};
