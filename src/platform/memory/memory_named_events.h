#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/named_events.h"

// Named events within one test. Every signal is recorded, also of an event that nobody made.
class MemoryNamedEvents : public platform::NamedEvents {
public:
    std::vector<std::string> signals;
    std::set<std::string> existing;
    std::vector<std::pair<std::string, std::uint32_t>> waits;  // name and milliseconds, in order
    int openEvents = 0;
    bool createFails = false;
    std::vector<std::pair<std::string, std::uint32_t>> lockings;  // name and milliseconds, in order
    std::vector<platform::LockResult> lockResults;                // of the next lockings; then they are taken
    int heldLocks = 0;
    std::vector<int> heldLocksAtSignals;  // in the order of the signals

    std::unique_ptr<platform::NamedEvent> create(std::string_view name) override {
        if (createFails) {
            return nullptr;
        }
        existing.emplace(name);
        return std::make_unique<Event>(*this, name);
    }
    bool signal(std::string_view name) override {
        signals.emplace_back(name);
        heldLocksAtSignals.push_back(heldLocks);
        return existing.count(std::string(name)) != 0;
    }
    platform::LockResult lock(std::string_view name, std::uint32_t milliseconds,
                              std::unique_ptr<platform::NamedLock>& outLock) override {
        outLock.reset();
        lockings.emplace_back(name, milliseconds);
        platform::LockResult result = platform::LockResult::kTaken;
        if (!lockResults.empty()) {
            result = lockResults.front();
            lockResults.erase(lockResults.begin());
        }
        if (result == platform::LockResult::kTaken) {
            outLock = std::make_unique<Lock>(*this);
        }
        return result;
    }

private:
    class Lock : public platform::NamedLock {
    public:
        explicit Lock(MemoryNamedEvents& owner) : owner_(owner) { ++owner_.heldLocks; }
        ~Lock() override { --owner_.heldLocks; }

    private:
        MemoryNamedEvents& owner_;
    };
    class Event : public platform::NamedEvent {
    public:
        Event(MemoryNamedEvents& owner, std::string_view name) : owner_(owner), name_(name) {
            ++owner_.openEvents;
        }
        ~Event() override { --owner_.openEvents; }
        bool wait(std::uint32_t milliseconds) override {
            owner_.waits.emplace_back(name_, milliseconds);
            for (const std::string& signalled : owner_.signals) {
                if (signalled == name_) {
                    return true;
                }
            }
            return false;
        }

    private:
        MemoryNamedEvents& owner_;
        std::string name_;
    };
};
