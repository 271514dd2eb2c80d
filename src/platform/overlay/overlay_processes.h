#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/processes.h"

// Processes of which none is started or ended, and those of the base, which count as gone once they were to
// be ended. What a program would do, and how it would end, isn't known: it counts as done, with exit code 0.
// For one thread.
class OverlayProcesses : public platform::Processes {
public:
    struct Start {
        std::string commandLine;
        std::string workDirectory;
    };

    // Borrowed.
    explicit OverlayProcesses(platform::Processes& base) : base_(base) {}

    // The programs that were to be started, and the processes that were to be ended, in order.
    const std::vector<Start>& starts() const { return starts_; }
    const std::vector<platform::ProcessInfo>& ends() const { return ends_; }

    bool list(std::vector<platform::ProcessInfo>& outProcesses) override;
    bool terminate(std::uint32_t id, std::uint32_t politeMilliseconds) override;
    std::unique_ptr<platform::ChildProcess> start(std::string_view commandLine,
                                                  std::string_view workDirectory, int& outError) override;
    std::uint32_t currentId() override { return base_.currentId(); }
    std::vector<std::uint32_t> ownLine() override { return base_.ownLine(); }
    bool isAdministrators(std::uint32_t id) override {
        return !ended_.contains(id) && base_.isAdministrators(id);
    }

private:
    platform::Processes& base_;
    std::vector<Start> starts_;
    std::vector<platform::ProcessInfo> ends_;
    std::set<std::uint32_t> ended_;
};
