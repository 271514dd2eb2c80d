#include "platform/threads.h"

#include <windows.h>

namespace platform {

namespace {

// All groups with their active processors.
std::vector<ProcessorGroup> activeGroups() {
    DWORD size = 0;
    GetLogicalProcessorInformationEx(RelationGroup, nullptr, &size);
    std::vector<unsigned char> buffer(size);
    auto* information = reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(buffer.data());
    std::vector<ProcessorGroup> groups;
    if (size == 0 || GetLogicalProcessorInformationEx(RelationGroup, information, &size) == 0) {
        return groups;
    }
    const GROUP_RELATIONSHIP& relation = information->Group;
    for (WORD i = 0; i < relation.ActiveGroupCount; i++) {
        groups.push_back({i, relation.GroupInfo[i].ActiveProcessorMask});
    }
    return groups;
}

// The group of this process; 0 as well when it has several.
WORD ownGroup() {
    USHORT count = 1;
    USHORT group = 0;
    return GetProcessGroupAffinity(GetCurrentProcess(), &count, &group) != 0 ? group : 0;
}

}  // namespace

std::vector<ProcessorGroup> usableProcessorGroups() {
    DWORD_PTR processMask = 0;
    DWORD_PTR systemMask = 0;
    if (GetProcessAffinityMask(GetCurrentProcess(), &processMask, &systemMask) == 0) {
        return {};
    }
    std::vector<ProcessorGroup> usable;
    const WORD own = ownGroup();
    for (ProcessorGroup group : activeGroups()) {
        // The mask describes the process's own group, and is zero for a process in several groups. Other
        // groups are open to a process that was not restricted within its own.
        if (processMask != 0 && group.number == own) {
            group.mask &= processMask;
        } else if (processMask != systemMask) {
            group.mask = 0;
        }
        if (group.mask != 0) {
            usable.push_back(group);
        }
    }
    return usable;
}

int processorCount() {
    SYSTEM_INFO information;
    GetSystemInfo(&information);
    return information.dwNumberOfProcessors > 0 ? static_cast<int>(information.dwNumberOfProcessors) : 1;
}

bool bindThisThread(const ProcessorGroup& group) {
    GROUP_AFFINITY affinity{};
    affinity.Group = group.number;
    affinity.Mask = group.mask;
    return SetThreadGroupAffinity(GetCurrentThread(), &affinity, nullptr) != 0;
}

bool setThisThreadLowPriority(bool low) {
    return SetThreadPriority(GetCurrentThread(),
                             low ? THREAD_PRIORITY_BELOW_NORMAL : THREAD_PRIORITY_NORMAL) != 0;
}

}  // namespace platform
