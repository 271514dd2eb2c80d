#include "engine/run_locks.h"

#include <algorithm>
#include <vector>

#include "platform/environment.h"
#include "platform/processes.h"
#include "support/md5.h"

namespace {

constexpr std::string_view kProductLockStart = "tandrel-product-";
constexpr std::string_view kJournalsLock = "tandrel-journals";
// Holds the process number of the run at work. Whatever that one starts inherits it; a program that is still
// there later has a number that nobody has any more.
constexpr char kHolderVariable[] = "TANDREL_RUN";
constexpr std::uint32_t kLookMilliseconds = 500;

// A product's name may have any characters and any length, that of a lock may not.
std::string lockNameOf(std::string_view product) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string name(kProductLockStart);
    for (const std::uint8_t byte : md5Of(product.data(), product.size())) {
        name += kDigits[byte >> 4];
        name += kDigits[byte & 15];
    }
    return name;
}

}  // namespace

ProductLock::ProductLock(const platform::Platform& machine, DebugLog debugLog)
    : machine_(machine), debugLog_(std::move(debugLog)) {}

ProductLock::~ProductLock() = default;

ProductLock::Result ProductLock::take(std::string_view product) {
    const platform::LockResult result = machine_.events.lock(lockNameOf(product), kLookMilliseconds, lock_);
    if (result == platform::LockResult::kBusy) {
        return isPartOfAnother() ? Result::kPartOfAnother : Result::kBusy;
    }
    if (result == platform::LockResult::kUnavailable) {
        debugLog_.line("WARNING: Nothing keeps other runs for this product from starting: no lock");
    }
    machine_.environment.set(kHolderVariable, std::to_string(machine_.processes.currentId()));
    return Result::kTaken;
}

void ProductLock::release() {
    lock_.reset();
}

bool ProductLock::isPartOfAnother() {
    const std::string holder = machine_.environment.get(kHolderVariable).value_or("");
    const std::string own = std::to_string(machine_.processes.currentId());
    std::vector<platform::ProcessInfo> running;
    return !holder.empty() && holder != own && machine_.processes.list(running) &&
           std::ranges::any_of(running,
                               [&](const auto& process) { return std::to_string(process.id) == holder; });
}

std::unique_ptr<platform::NamedLock> lockJournals(platform::NamedEvents& events, std::uint32_t milliseconds) {
    std::unique_ptr<platform::NamedLock> lock;
    events.lock(kJournalsLock, milliseconds, lock);
    return lock;
}
