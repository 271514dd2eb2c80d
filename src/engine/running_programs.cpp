#include "engine/running_programs.h"

#include "base/fixed_text.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"

namespace {

constexpr std::size_t kDirectoryLimit = PathText::capacity() - 1;

}  // namespace

void RunningPrograms::enterPage(std::int32_t page, const RunActions& runActions) {
    noted_.clear();
    for (const std::int32_t node : tags_.childrenOf(page)) {
        if (tags_.conditionHolds(node)) {
            carryOut(node, runActions);
        }
    }
}

void RunningPrograms::carryOut(std::int32_t node, const RunActions& runActions) {
    const auto text = tags_.textOf(node);
    if (!text) {
        return;
    }
    if (tags_.isCalled(node, "TerminateApp")) {
        const auto service = tags_.attribute(node, "Service");
        const bool isService = service && OUtils::equalsIgnoreCase(*service, vocabulary::WordName("true"));
        system_.closeApplication(*text, isService, directoryOf(node));
    } else if (tags_.isCalled(node, "TerminateSequence")) {
        runActions(*text);
    } else if (tags_.isCalled(node, "TestApp")) {
        noted_.push_back({std::string(*text), directoryOf(node)});
    }
}

std::string RunningPrograms::directoryOf(std::int32_t node) {
    return tags_.expandAttribute(node, "Directory").substr(0, kDirectoryLimit);
}

std::vector<RunningPrograms::Program> RunningPrograms::look() {
    std::vector<Program> programs;
    for (const Noted& noted : noted_) {
        programs.push_back({noted.name, system_.isApplicationRunning(noted.name, noted.directory)});
    }
    return programs;
}
