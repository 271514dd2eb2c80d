#pragma once

#include <vector>

#include "platform/environment.h"
#include "platform/threads.h"

// How many threads a pool uses by itself and where they run.
namespace OUtils {

// A number of threads from outside is taken up to this one.
inline constexpr int kThreadLimit = 1024;

// The settings for the pools of a process. As made here: as many threads as the machine has processors, bound
// to processor groups where there are several.
struct ThreadSettings {
    int count = 0;  // 0 takes the processors of this machine
    bool affinity = true;
};

// `count` is ORMEL_NUM_THREADS where that is at least 1, but at most kThreadLimit. `affinity` is false only
// when ORMEL_USE_THREAD_AFFINITY is set to a text that converts to 0.
ThreadSettings readThreadSettings(platform::Environment& environment);

// The count, or for 0 with affinity the processors of the usable groups, or else the processors that the
// system reports. At least 1.
int threadCountOf(const ThreadSettings& settings);

// The group to which the thread of that index is bound: group after group is filled by its number of
// processors, and then again from the first. Null when there are fewer than two groups: no binding.
const platform::ProcessorGroup* groupForThread(const std::vector<platform::ProcessorGroup>& groups,
                                               int index);

}  // namespace OUtils
