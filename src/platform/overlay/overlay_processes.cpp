#include "platform/overlay/overlay_processes.h"

#include <algorithm>

namespace {

class UnknownProgram : public platform::ChildProcess {
public:
    bool wait(std::uint32_t /*milliseconds*/) override { return true; }
    int exitCode() override { return 0; }
};

}  // namespace

bool OverlayProcesses::list(std::vector<platform::ProcessInfo>& outProcesses) {
    const bool isListed = base_.list(outProcesses);
    std::erase_if(outProcesses, [&](const auto& process) { return ended_.contains(process.id); });
    return isListed;
}

bool OverlayProcesses::terminate(std::uint32_t id, std::uint32_t /*politeMilliseconds*/) {
    std::vector<platform::ProcessInfo> running;
    const std::vector<std::uint32_t> line = base_.ownLine();
    if (id <= 1 || id == base_.currentId() || std::ranges::find(line, id) != line.end() || !list(running)) {
        return false;
    }
    const auto found =
        std::ranges::find_if(running, [&](const platform::ProcessInfo& process) { return process.id == id; });
    if (found == running.end()) {
        return false;
    }
    ends_.push_back(*found);
    ended_.insert(id);
    return true;
}

std::unique_ptr<platform::ChildProcess> OverlayProcesses::start(std::string_view commandLine,
                                                                std::string_view workDirectory,
                                                                int& outError) {
    outError = 0;
    starts_.push_back({std::string(commandLine), std::string(workDirectory)});
    return std::make_unique<UnknownProgram>();
}
