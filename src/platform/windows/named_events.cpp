#include "platform/named_events.h"

#include "platform/windows/wide_text.h"

namespace platform {

namespace {

class WindowsNamedEvent : public NamedEvent {
public:
    explicit WindowsNamedEvent(HANDLE event) : event_(event) {}

    bool wait(std::uint32_t milliseconds) override {
        return WaitForSingleObject(event_.get(), milliseconds) == WAIT_OBJECT_0;
    }

private:
    Handle event_;
};

class WindowsNamedEvents : public NamedEvents {
public:
    std::unique_ptr<NamedEvent> create(std::string_view name) override {
        const std::wstring wide = wideOf(name);
        // Without a name it would be an event that nobody else can find. Once signalled it stays so, for
        // every process that waits.
        const HANDLE event = wide.empty() ? nullptr : CreateEventW(nullptr, TRUE, FALSE, wide.c_str());
        return event != nullptr ? std::make_unique<WindowsNamedEvent>(event) : nullptr;
    }

    bool signal(std::string_view name) override {
        const Handle event(OpenEventW(EVENT_MODIFY_STATE, FALSE, wideOf(name).c_str()));
        return event && SetEvent(event.get()) != 0;
    }
};

}  // namespace

NamedEvents& systemNamedEvents() {
    static WindowsNamedEvents events;
    return events;
}

}  // namespace platform
