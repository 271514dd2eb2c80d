#pragma once

#include <vector>

#include "platform/environment.h"
#include "platform/threads.h"

// How many threads a pool uses by itself and where they run.
namespace OUtils {

// False only when ORMEL_USE_THREAD_AFFINITY is set to a text that converts to 0.
bool readThreadAffinity(platform::Environment& environment);

// A number of threads from outside is taken up to this one.
inline constexpr int kThreadLimit = 1024;

// ORMEL_NUM_THREADS if that is at least 1, and kThreadLimit if it is more; otherwise, with thread affinity,
// the processors of the usable groups; otherwise the processors that the system reports. At least 1.
int readDefaultThreadCount(platform::Environment& environment);

// The values of this process, read at the first use and kept.
bool useThreadAffinity();
int defaultThreadCount();

// The group to which the thread of that index is bound: group after group is filled by its number of
// processors, and then again from the first. Null when there are fewer than two groups: no binding.
const platform::ProcessorGroup* groupForThread(const std::vector<platform::ProcessorGroup>& groups,
                                               int index);

}  // namespace OUtils
