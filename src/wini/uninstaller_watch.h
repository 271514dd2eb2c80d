#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace platform {
class ChildProcess;
class NamedEvent;
}  // namespace platform

// Follows an uninstaller to its end. Many of them hand their work to a second program and end at once. Those
// of this system do, and their second program signals its start and its end by events; others signal nothing,
// so that only their effect shows whether they are done.
class UninstallerWatch {
public:
    // How long a phase may last, in milliseconds.
    struct Limits {
        std::uint32_t start = 60000;  // from the end of the program to the signal of a second one
        std::uint32_t end = 300000;   // of the program itself, and from the first signal to the second
    };
    enum class Phase {
        kRunning,    // the program runs and has signalled nothing
        kUnclear,    // it ended with 0 and without a signal: another program may go on
        kSignalled,  // the start was signalled, the end wasn't, or the program still runs
        kOver,
    };

    // Milliseconds since some fixed moment.
    using Clock = std::function<std::uint64_t()>;

    // The program is borrowed. The events are borrowed too, and may both be null: then the end of the program
    // is the end.
    UninstallerWatch(platform::ChildProcess& program, platform::NamedEvent* start, platform::NamedEvent* end,
                     Limits limits, Clock clock)
        : program_(program), start_(start), end_(end), limits_(limits), clock_(std::move(clock)) {}

    Phase phase() const;
    // Waits for the next thing to happen, for at most a tenth of a second.
    void look();
    // Has the phase lasted for its limit, or for a multiple of it after `extend`?
    bool isOverdue() const { return waited_ >= static_cast<std::uint64_t>(limitOfPhase()) * extent_; }
    // Gives the phase its limit once more.
    void extend() { ++extent_; }
    // How long the phase has been looked at, in milliseconds.
    std::uint64_t waited() const { return waited_; }
    // Of the ended program. Only for the phases kUnclear and kOver.
    int exitCode() const { return exitCode_; }

private:
    void waitForNext();
    std::uint32_t limitOfPhase() const { return phase() == Phase::kUnclear ? limits_.start : limits_.end; }

    platform::ChildProcess& program_;
    platform::NamedEvent* start_;
    platform::NamedEvent* end_;
    Limits limits_;
    Clock clock_;
    bool hasEnded_ = false;  // the program
    int exitCode_ = 0;
    bool startSignalled_ = false;
    bool endSignalled_ = false;
    std::uint64_t waited_ = 0;
    std::uint32_t extent_ = 1;
};
