#pragma once

#include <string_view>

#include <cstdint>
#include <memory>

// Events that processes know by name (named semaphores on Linux).
namespace platform {

class NamedEvent {
public:
    virtual ~NamedEvent() = default;
    // True when the event was signalled within `milliseconds`.
    virtual bool wait(std::uint32_t milliseconds) = 0;
};

class NamedEvents {
public:
    virtual ~NamedEvents() = default;
    // Creates the event, unsignalled, or opens the existing one; null on failure. The name goes with the
    // object that created it.
    virtual std::unique_ptr<NamedEvent> create(std::string_view name) = 0;
    // Signals an existing event. False when there is none of that name.
    virtual bool signal(std::string_view name) = 0;
};

NamedEvents& systemNamedEvents();

}  // namespace platform
