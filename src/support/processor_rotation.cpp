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

std::optional<int> numberOf(const std::optional<std::string>& text) {
    return text.has_value() ? std::optional<int>(textToInteger(*text)) : std::nullopt;
}

}  // namespace

ThreadSettings readThreadSettings(platform::Environment& environment) {
    ThreadSettings settings;
    const int count = numberOf(environment.get("ORMEL_NUM_THREADS")).value_or(0);
    settings.count = std::clamp(count, 0, kThreadLimit);
    settings.affinity = numberOf(environment.get("ORMEL_USE_THREAD_AFFINITY")) != 0;
    return settings;
}

int threadCountOf(const ThreadSettings& settings) {
    if (settings.count >= 1) {
        return settings.count;
    }
    const int inGroups = settings.affinity ? processorsOf(platform::usableProcessorGroups()) : 0;
    return inGroups >= 1 ? inGroups : std::max(platform::processorCount(), 1);
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
