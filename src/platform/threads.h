#pragma once

#include <cstdint>
#include <vector>

// What std::thread doesn't offer: processors and priorities.
namespace platform {

// The processors of one group that this process may use, as a mask of bits.
struct ProcessorGroup {
    std::uint16_t number = 0;
    std::uint64_t mask = 0;
};

// All groups with at least one usable processor; empty when the system can't tell. Linux has one group for
// each 64 processors.
std::vector<ProcessorGroup> usableProcessorGroups();

// The number of processors that the system reports, whatever this process may use; at least 1.
int processorCount();

// Binds the calling thread to the processors of a group. False when the system refuses.
bool bindThisThread(const ProcessorGroup& group);

// Below normal priority for the calling thread, or back to normal. False when the system refuses.
bool setThisThreadLowPriority(bool low);

}  // namespace platform
