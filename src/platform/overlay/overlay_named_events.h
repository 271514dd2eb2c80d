#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/named_events.h"

// Events and locks that nobody outside this object knows. Even to ask whether another process holds a lock
// would leave something on the machine, so each lock is free at first. Usable by any thread; outlives its
// events and locks.
class OverlayNamedEvents : public platform::NamedEvents {
public:
    // Which events were to be signalled, in order.
    std::vector<std::string> signals() const;

    std::unique_ptr<platform::NamedEvent> create(std::string_view name) override;
    bool signal(std::string_view name) override;
    platform::LockResult lock(std::string_view name, std::uint32_t milliseconds,
                              std::unique_ptr<platform::NamedLock>& outLock) override;

private:
    struct Shared;
    class Event;
    class Lock;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, std::weak_ptr<Shared>> events_;
    std::set<std::string> locks_;
    std::vector<std::string> signals_;
};
