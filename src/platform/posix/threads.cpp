#include "platform/threads.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace platform {

namespace {

constexpr std::size_t kGroupSize = 64;
constexpr std::size_t kMaxProcessors = 65536;
constexpr int kLowPrioritySteps = 5;
constexpr int kWeakestPriority = 19;

// A set of processors whose size is known at run time only.
class ProcessorSet {
public:
    explicit ProcessorSet(std::size_t capacity)
        : capacity_(capacity), words_(CPU_ALLOC_SIZE(capacity) / sizeof(cpu_set_t) + 1) {
        CPU_ZERO_S(bytes(), words_.data());
    }
    cpu_set_t* data() { return words_.data(); }
    std::size_t bytes() const { return CPU_ALLOC_SIZE(capacity_); }
    std::size_t capacity() const { return capacity_; }
    bool has(std::size_t processor) const { return CPU_ISSET_S(processor, bytes(), words_.data()); }
    void add(std::size_t processor) { CPU_SET_S(processor, bytes(), words_.data()); }

private:
    std::size_t capacity_;
    std::vector<cpu_set_t> words_;
};

std::uint64_t groupMask(const ProcessorSet& set, std::size_t group) {
    std::uint64_t mask = 0;
    for (std::size_t bit = 0; bit < kGroupSize; ++bit) {
        if (set.has(group * kGroupSize + bit)) {
            mask |= std::uint64_t{1} << bit;
        }
    }
    return mask;
}

}  // namespace

std::vector<ProcessorGroup> usableProcessorGroups() {
    std::vector<ProcessorGroup> groups;
    // The system refuses a set that is too small for the machine.
    for (std::size_t capacity = 1024; capacity <= kMaxProcessors; capacity *= 2) {
        ProcessorSet set(capacity);
        if (sched_getaffinity(getpid(), set.bytes(), set.data()) == 0) {
            for (std::size_t group = 0; group < capacity / kGroupSize; ++group) {
                const std::uint64_t mask = groupMask(set, group);
                if (mask != 0) {
                    groups.push_back({static_cast<std::uint16_t>(group), mask});
                }
            }
            return groups;
        }
        if (errno != EINVAL) {
            return groups;
        }
    }
    return groups;
}

int processorCount() {
    return static_cast<int>(std::max(sysconf(_SC_NPROCESSORS_ONLN), 1L));
}

bool bindThisThread(const ProcessorGroup& group) {
    ProcessorSet set((std::size_t{group.number} + 1) * kGroupSize);
    for (std::size_t bit = 0; bit < kGroupSize; ++bit) {
        if ((group.mask >> bit & 1) != 0) {
            set.add(group.number * kGroupSize + bit);
        }
    }
    return pthread_setaffinity_np(pthread_self(), set.bytes(), set.data()) == 0;
}

bool setThisThreadLowPriority(bool low) {
    // The process's first thread keeps the priority that the process was started with.
    errno = 0;
    const int normal = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
    if (normal == -1 && errno != 0) {
        return false;
    }
    const int wanted = low ? std::min(normal + kLowPrioritySteps, kWeakestPriority) : normal;
    return setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), wanted) == 0;
}

}  // namespace platform
