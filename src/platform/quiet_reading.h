#pragma once

#include <atomic>

namespace platform {

// For QuietReading and the calls that look at it.
inline std::atomic<int> quietReadings{0};

// While one lives, what is opened to be read, and the directories that are listed, keep the times of their
// last access where the system can do that: on Linux for files of this user, and for root. Links that lead to
// them don't. On all threads; any number may live at a time.
class QuietReading {
public:
    QuietReading() { ++quietReadings; }
    ~QuietReading() { --quietReadings; }
    QuietReading(const QuietReading&) = delete;
    QuietReading& operator=(const QuietReading&) = delete;
};

}  // namespace platform
