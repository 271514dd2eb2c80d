#pragma once

#include <string_view>

#include <cstdint>
#include <memory>

// Events and locks that processes know by name (events are named semaphores on Linux).
namespace platform {

class NamedEvent {
public:
    virtual ~NamedEvent() = default;
    // True when the event was signalled within `milliseconds`.
    virtual bool wait(std::uint32_t milliseconds) = 0;
};

// A lock that is held until the object is destroyed or its process ends, however it ends.
class NamedLock {
public:
    virtual ~NamedLock() = default;
};

enum class LockResult {
    kTaken,
    kBusy,         // another process holds it
    kUnavailable,  // the system has no place for it, or refuses
};

class NamedEvents {
public:
    virtual ~NamedEvents() = default;
    // Creates the event, unsignalled, or opens the existing one; null on failure. The name goes with the
    // object that created it. What another user put under the name is not used; where this user may do so, it
    // is moved out of the way.
    virtual std::unique_ptr<NamedEvent> create(std::string_view name) = 0;
    // Signals an existing event. False when there is none of that name that can be used safely.
    virtual bool signal(std::string_view name) = 0;
    // Waits up to `milliseconds` for a lock that all administrators share and nobody else can hold. `outLock`
    // is null unless the result is kTaken.
    virtual LockResult lock(std::string_view name, std::uint32_t milliseconds,
                            std::unique_ptr<NamedLock>& outLock) = 0;
};

NamedEvents& systemNamedEvents();

}  // namespace platform
