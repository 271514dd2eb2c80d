#include "installer/uninstallation_lock.h"

#include <algorithm>
#include <string>
#include <vector>

#include "installer/start_messages.h"
#include "platform/environment.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/processes.h"

namespace {

constexpr char kLockName[] = "tandrel-uninstallation";
// Holds the process number of the uninstallation at work. Whatever that one starts inherits it; a program
// that is still there later has a number that nobody has any more.
constexpr char kHolderVariable[] = "TANDREL_UNINSTALLATION";
// Long enough for one that is just ending.
constexpr std::uint32_t kFirstLookMilliseconds = 500;

}  // namespace

UninstallationLock::UninstallationLock(platform::Platform& platform, StartMessages& messages,
                                       DebugLog debugLog)
    : platform_(platform), messages_(messages), debugLog_(std::move(debugLog)) {}

UninstallationLock::~UninstallationLock() = default;

bool UninstallationLock::take() {
    platform::LockResult result = platform_.events.lock(kLockName, kFirstLookMilliseconds, lock_);
    if (result == platform::LockResult::kBusy && isPartOfAnother()) {
        debugLog_.line("Another uninstallation started this one");
        return true;
    }
    if (result == platform::LockResult::kBusy) {
        messages_.remark("Another uninstallation is at work. Waiting for its end ...");
        result = platform_.events.lock(kLockName, kWaitMilliseconds, lock_);
    }
    if (result == platform::LockResult::kBusy) {
        messages_.note(
            "ERROR: Another uninstallation is still at work. Nothing was uninstalled; please try again "
            "later.");
        return false;
    }
    if (result == platform::LockResult::kUnavailable) {
        debugLog_.line("WARNING: Nothing keeps other uninstallations from starting: no lock");
    }
    platform_.environment.set(kHolderVariable, std::to_string(platform_.processes.currentId()));
    return true;
}

void UninstallationLock::release() {
    lock_.reset();
}

bool UninstallationLock::isPartOfAnother() {
    const std::string holder = platform_.environment.get(kHolderVariable).value_or("");
    std::vector<platform::ProcessInfo> running;
    return !holder.empty() && platform_.processes.list(running) &&
           std::any_of(running.begin(), running.end(),
                       [&](const auto& process) { return std::to_string(process.id) == holder; });
}
