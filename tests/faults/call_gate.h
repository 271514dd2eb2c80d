#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/memory/memory_file_system.h"
#include "platform/registry.h"

// Why a call fails, in the numbers of each interface.
struct FaultKind {
    const char* name;
    int fileStatus;
    int registryStatus;
};
inline constexpr int kSharingViolation = 32;
inline constexpr FaultKind kFaultKinds[] = {
    {"no-space", MemoryFileSystem::kDiskFull, platform::kRegDiskFull},
    {"no-access", MemoryFileSystem::kAccessDenied, platform::kRegAccessDenied},
    {"sharing", kSharingViolation, platform::kRegBusy},
};

enum class CallClass {
    kChanging,  // it would change the machine
    kReading,
};

// Which calls fail: the n-th of its class, from 1, and with `lasting` all later ones of that class as well.
// 0 is none.
struct FaultPlan {
    CallClass callClass = CallClass::kChanging;
    int call = 0;
    bool lasting = false;
    FaultKind kind = kFaultKinds[0];
};

// Every call that a program makes on a machine passes here: it is counted, may be refused, and may be
// watched. A program that makes more calls than any run needs is in a loop; that is printed and ends the
// process. Usable by any thread.
class CallGate {
public:
    // Called before each changing call, and with `isTorn` once more in the middle of a write.
    using Watcher = std::function<void(int number, const std::string& call, bool isTorn)>;

    explicit CallGate(std::string run) : run_(std::move(run)) {}

    void setPlan(const FaultPlan& plan) { plan_ = plan; }
    void setWatcher(Watcher watcher) { watcher_ = std::move(watcher); }
    // Until the program writes a line with this text to its log, calls are neither counted nor refused.
    void startAtLogLine(std::string text);
    void noteLogText(std::string_view text);

    // Counts the call. True when it has to fail.
    bool refuses(CallClass callClass, const std::string& call);
    // For calls of neither class; bounds the run.
    void pass();
    bool isWatchingWrites() const { return watcher_ != nullptr; }
    void reportTornWrite(const std::string& call);

    int fileStatus() const { return plan_.kind.fileStatus; }
    int registryStatus() const { return plan_.kind.registryStatus; }
    int count(CallClass callClass) const;
    // The first call that failed; empty when none did.
    std::string failedCall() const;

private:
    std::string run_;
    FaultPlan plan_;
    Watcher watcher_;
    std::string startLine_;
    mutable std::mutex mutex_;
    bool counts_ = true;
    int changing_ = 0;
    int reading_ = 0;
    std::string failedCall_;
    std::atomic<long> passed_{0};
};
