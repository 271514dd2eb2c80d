#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/processes.h"

// Processes that exist on paper only. Records what was started and ended.
class MemoryProcesses : public platform::Processes {
public:
    struct Started {
        std::string commandLine;
        std::string workDirectory;
    };
    struct Terminated {
        std::uint32_t id = 0;
        std::uint32_t politeMilliseconds = 0;
    };

    std::vector<platform::ProcessInfo> running;
    bool listFails = false;
    std::set<std::uint32_t> unkillable;  // ending these fails
    std::uint32_t ownId = 1;
    std::vector<std::uint32_t> parents;  // of this process, the nearest first

    std::deque<int> exitCodes;               // of the programs to be started, in order; 0 when used up
    int startError = 0;                      // non-zero: starting fails with this number
    std::deque<int> startErrors;             // of the next starts, in order; 0 starts
    std::set<std::uint32_t> administrators;  // processes with the rights of one
    int waitsBeforeEnd = 0;                  // so many waits of a program end without it having ended
    std::function<void(const std::string& commandLine)> onStart;  // what the program does, at its start

    std::vector<Started> started;
    std::vector<Terminated> terminated;

    bool list(std::vector<platform::ProcessInfo>& outProcesses) override {
        outProcesses = listFails ? std::vector<platform::ProcessInfo>() : running;
        return !listFails;
    }

    bool terminate(std::uint32_t id, std::uint32_t politeMilliseconds) override {
        terminated.push_back({id, politeMilliseconds});
        const auto found =
            std::find_if(running.begin(), running.end(), [id](const auto& info) { return info.id == id; });
        if (found == running.end() || unkillable.count(id) != 0) {
            return false;
        }
        running.erase(found);
        return true;
    }

    std::unique_ptr<platform::ChildProcess> start(std::string_view commandLine,
                                                  std::string_view workDirectory, int& outError) override {
        started.push_back({std::string(commandLine), std::string(workDirectory)});
        outError = startError;
        if (!startErrors.empty()) {
            outError = startErrors.front();
            startErrors.pop_front();
        }
        if (outError != 0) {
            return nullptr;
        }
        int exitCode = 0;
        if (!exitCodes.empty()) {
            exitCode = exitCodes.front();
            exitCodes.pop_front();
        }
        if (onStart) {
            onStart(std::string(commandLine));
        }
        return std::make_unique<Child>(waitsBeforeEnd, exitCode);
    }

    std::uint32_t currentId() override { return ownId; }

    std::vector<std::uint32_t> ownLine() override {
        std::vector<std::uint32_t> line = parents;
        line.insert(line.begin(), ownId);
        return line;
    }

    bool isAdministrators(std::uint32_t id) override { return administrators.contains(id); }

private:
    class Child : public platform::ChildProcess {
    public:
        Child(int waitsBeforeEnd, int exitCode) : waitsLeft_(waitsBeforeEnd), exitCode_(exitCode) {}
        bool wait(std::uint32_t) override { return waitsLeft_-- <= 0; }
        int exitCode() override { return exitCode_; }

    private:
        int waitsLeft_;
        int exitCode_;
    };
};
