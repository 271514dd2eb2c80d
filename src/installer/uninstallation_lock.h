#pragma once

#include <cstdint>
#include <memory>

#include "support/debug_log.h"

class StartMessages;

namespace platform {
class NamedLock;
struct Platform;
}  // namespace platform

// Keeps the uninstallations of a machine apart: each works on lists and directories that they share. Ends
// with the process, however that ends.
class UninstallationLock {
public:
    // How long an uninstallation waits for another one.
    static constexpr std::uint32_t kWaitMilliseconds = 60000;

    // The platform and the messages are borrowed and outlive the object.
    UninstallationLock(platform::Platform& platform, StartMessages& messages, DebugLog debugLog);
    ~UninstallationLock();

    // Waits for another uninstallation, and says so on standard error. False when that one is still at work
    // at the end of the wait, which a message says. An uninstallation that another one started goes on at
    // once, as a part of that one. Where the system has no such lock, that is a line in the debug log, and
    // true.
    bool take();
    // Lets the next one begin.
    void release();

private:
    bool isPartOfAnother();

    platform::Platform& platform_;
    StartMessages& messages_;
    DebugLog debugLog_;
    std::unique_ptr<platform::NamedLock> lock_;
};
