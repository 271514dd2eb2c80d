#pragma once

#include <string>
#include <vector>

#include "fakes/recording_ui.h"

// What a front end was to show: its calls without those that only give it time for its events.
inline std::vector<std::string> shownCalls(const RecordingUI& ui) {
    std::vector<std::string> calls = ui.calls;
    std::erase_if(calls, [](const std::string& call) { return call.starts_with("pumpEvents"); });
    return calls;
}
