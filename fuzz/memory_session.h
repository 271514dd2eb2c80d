#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "description/answers_file.h"
#include "fakes/walking_ui.h"
#include "fuzz_target.h"
#include "platform/memory/memory_platform.h"
#include "support/p_console.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

// How a session on a machine in memory ended.
struct SessionEnd {
    bool isLoaded = false;
    bool isFinished = false;
    bool hasSucceeded = false;
};

// Loads the package or, with kSessionActionLog, the action log at `path` and walks through all pages with
// nobody to ask. `onCall` gets each call of the front end as text (fakes/recording_ui.h). No file stays open.
inline SessionEnd runSession(MemoryPlatform& machine, const std::string& path, std::uint32_t flags,
                             const std::function<void(Wini&, std::string_view)>& onCall = {}) {
    SessionEnd end;
    {
        const DebugLog debugLog;
        SystemServices services(machine.bundle(), debugLog);
        AnswersFile answers(machine.files);
        NestedSessions nestedSessions(debugLog);
        Wini session(machine.bundle(), services, answers, nestedSessions, debugLog, WiniArguments());
        session.setUnattended(true);
        WalkingUI ui(session);
        ui.onCall = [&](const std::string& call) {
            if (onCall) {
                onCall(session, call);
            }
        };
        PConsole silent;
        silent.setEnabled(false);
        end.isLoaded = session.loadCabinet(path.c_str(), 0, flags) == 0;
        const int result = end.isLoaded ? session.run(&ui, &silent) : -1;
        end.isFinished = session.isFinished();
        end.hasSucceeded = end.isFinished && result == 0 && !session.hasErrors();
        session.releaseSession();
    }
    require(machine.files.openFileCount() == 0);
    return end;
}
