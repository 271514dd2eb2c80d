#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/named_events.h"

// Named events within one test. Every signal is recorded, also of an event that nobody made.
class FakeNamedEvents : public platform::NamedEvents {
public:
    std::vector<std::string> signals;
    std::set<std::string> existing;

    std::unique_ptr<platform::NamedEvent> create(const char* name) override {
        existing.insert(name);
        return std::make_unique<Event>(*this, name);
    }
    bool signal(const char* name) override {
        signals.push_back(name);
        return existing.count(name) != 0;
    }

private:
    class Event : public platform::NamedEvent {
    public:
        Event(FakeNamedEvents& owner, const char* name) : owner_(owner), name_(name) {}
        bool wait(std::uint32_t) override {
            for (const std::string& signalled : owner_.signals) {
                if (signalled == name_) {
                    return true;
                }
            }
            return false;
        }

    private:
        FakeNamedEvents& owner_;
        std::string name_;
    };
};
