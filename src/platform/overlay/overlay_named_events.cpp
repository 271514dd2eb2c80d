#include "platform/overlay/overlay_named_events.h"

#include <chrono>
#include <utility>

// One signal ends one wait.
struct OverlayNamedEvents::Shared {
    int signals = 0;
};

class OverlayNamedEvents::Event : public platform::NamedEvent {
public:
    Event(OverlayNamedEvents& owner, std::shared_ptr<Shared> shared)
        : owner_(owner), shared_(std::move(shared)) {}

    bool wait(std::uint32_t milliseconds) override {
        std::unique_lock lock(owner_.mutex_);
        const bool isSignalled = owner_.changed_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                                          [this] { return shared_->signals > 0; });
        shared_->signals -= isSignalled ? 1 : 0;
        return isSignalled;
    }

private:
    OverlayNamedEvents& owner_;
    std::shared_ptr<Shared> shared_;
};

class OverlayNamedEvents::Lock : public platform::NamedLock {
public:
    Lock(OverlayNamedEvents& owner, std::string_view name) : owner_(owner), name_(name) {}
    ~Lock() override {
        const std::lock_guard lock(owner_.mutex_);
        owner_.locks_.erase(name_);
        owner_.changed_.notify_all();
    }

private:
    OverlayNamedEvents& owner_;
    std::string name_;
};

std::vector<std::string> OverlayNamedEvents::signals() const {
    const std::lock_guard lock(mutex_);
    return signals_;
}

std::unique_ptr<platform::NamedEvent> OverlayNamedEvents::create(std::string_view name) {
    const std::lock_guard lock(mutex_);
    std::weak_ptr<Shared>& known = events_[std::string(name)];
    std::shared_ptr<Shared> shared = known.lock();
    if (shared == nullptr) {
        shared = std::make_shared<Shared>();
        known = shared;
    }
    return std::make_unique<Event>(*this, std::move(shared));
}

bool OverlayNamedEvents::signal(std::string_view name) {
    const std::lock_guard lock(mutex_);
    signals_.emplace_back(name);
    const auto found = events_.find(std::string(name));
    const std::shared_ptr<Shared> shared = found == events_.end() ? nullptr : found->second.lock();
    if (shared == nullptr) {
        return false;
    }
    ++shared->signals;
    changed_.notify_all();
    return true;
}

platform::LockResult OverlayNamedEvents::lock(std::string_view name, std::uint32_t milliseconds,
                                              std::unique_ptr<platform::NamedLock>& outLock) {
    outLock.reset();
    std::unique_lock lock(mutex_);
    const std::string key(name);
    const bool isFree = changed_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                          [&] { return !locks_.contains(key); });
    if (!isFree) {
        return platform::LockResult::kBusy;
    }
    locks_.insert(key);
    outLock = std::make_unique<Lock>(*this, name);
    return platform::LockResult::kTaken;
}
