#include "support/processor_rotation.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string>

#include "base/text_functions.h"

namespace OUtils {

namespace {

int processorsOf(const platform::ProcessorGroup& group) {
    return std::popcount(group.mask);
}

int processorsOf(const std::vector<platform::ProcessorGroup>& groups) {
    int sum = 0;
    for (const platform::ProcessorGroup& group : groups) {
        sum += processorsOf(group);
    }
    return sum;
}

}  // namespace

bool readThreadAffinity(platform::Environment& environment) {
    const std::optional<std::string> text = environment.get("ORMEL_USE_THREAD_AFFINITY");
    return !text.has_value() || textToInteger(text->c_str()) != 0;
}

int readDefaultThreadCount(platform::Environment& environment) {
    const std::optional<std::string> text = environment.get("ORMEL_NUM_THREADS");
    const int wanted = text.has_value() ? textToInteger(text->c_str()) : 0;
    if (wanted >= 1) {
        return std::min(wanted, kThreadLimit);
    }
    const int inGroups =
        readThreadAffinity(environment) ? processorsOf(platform::usableProcessorGroups()) : 0;
    return inGroups >= 1 ? inGroups : std::max(platform::processorCount(), 1);
}

bool useThreadAffinity() {
    static const bool affinity = readThreadAffinity(platform::systemEnvironment());
    return affinity;
}

int defaultThreadCount() {
    static const int count = readDefaultThreadCount(platform::systemEnvironment());
    return count;
}

const platform::ProcessorGroup* groupForThread(const std::vector<platform::ProcessorGroup>& groups,
                                               int index) {
    const int all = processorsOf(groups);
    if (groups.size() < 2 || all < 1 || index < 0) {
        return nullptr;
    }
    int left = index % all;
    for (const platform::ProcessorGroup& group : groups) {
        if (left < processorsOf(group)) {
            return &group;
        }
        left -= processorsOf(group);
    }
    return nullptr;
}

}  // namespace OUtils
