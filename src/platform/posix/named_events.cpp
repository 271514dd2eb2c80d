#include "platform/named_events.h"

#include <fcntl.h>
#include <semaphore.h>

#include <string>

#include "platform/clock.h"
#include "platform/posix/lock_file.h"
#include "platform/posix/semaphore_file.h"
#include "platform/posix/state_directory.h"

namespace platform {

namespace {

constexpr mode_t kOwnerOnly = 0600;

// The name of a semaphore or of a file, or an empty text for a name that can't be one.
std::string semaphoreName(std::string_view name) {
    const bool usable = !name.empty() && name.find('/') == std::string_view::npos;
    return usable ? "/" + std::string(name) : "";
}

// A semaphore outlives its owner when that is killed. So each user of it marks it as used, which the kernel
// ends; a semaphore without a mark is left over from a killed owner.
class PosixNamedEvent : public NamedEvent {
public:
    PosixNamedEvent(std::unique_ptr<SemaphoreFile> semaphore, std::string name, bool isOwner)
        : semaphore_(std::move(semaphore)), name_(std::move(name)), isOwner_(isOwner) {
        semaphore_->markAsUsed();
    }

    ~PosixNamedEvent() override {
        if (isOwner_) {
            sem_unlink(name_.c_str());
        }
    }

    bool wait(std::uint32_t milliseconds) override { return semaphore_->wait(milliseconds); }

private:
    const std::unique_ptr<SemaphoreFile> semaphore_;
    const std::string name_;
    const bool isOwner_;
};

// False, with the error in errno, also when the name is taken.
bool createSemaphore(const std::string& name) {
    sem_t* semaphore = sem_open(name.c_str(), O_CREAT | O_EXCL, kOwnerOnly, 0);
    return semaphore != SEM_FAILED && sem_close(semaphore) == 0;
}

class PosixNamedEvents : public NamedEvents {
public:
    std::unique_ptr<NamedEvent> create(std::string_view name) override;
    bool signal(std::string_view name) override;
    LockResult lock(std::string_view name, std::uint32_t milliseconds,
                    std::unique_ptr<NamedLock>& outLock) override;
};

std::unique_ptr<NamedEvent> PosixNamedEvents::create(std::string_view name) {
    const std::string full = semaphoreName(name);
    if (full.empty()) {
        return nullptr;
    }
    // Somebody else may create or remove the name between two calls; after a few rounds that is not an
    // accident any more.
    for (int round = 0; round < 10; ++round) {
        SemaphoreFile::clearName(full);
        const bool isOwner = createSemaphore(full);
        if (!isOwner && errno != EEXIST) {
            return nullptr;
        }
        if (auto semaphore = SemaphoreFile::open(full)) {
            return std::make_unique<PosixNamedEvent>(std::move(semaphore), full, isOwner);
        }
        sleepMilliseconds(1);
    }
    return nullptr;
}

bool PosixNamedEvents::signal(std::string_view name) {
    const std::string full = semaphoreName(name);
    const auto semaphore = full.empty() ? nullptr : SemaphoreFile::open(full);
    return semaphore != nullptr && semaphore->signal();
}

LockResult PosixNamedEvents::lock(std::string_view name, std::uint32_t milliseconds,
                                  std::unique_ptr<NamedLock>& outLock) {
    outLock.reset();
    return semaphoreName(name).empty() ? LockResult::kUnavailable
                                       : lockFile(stateDirectory(), std::string(name), milliseconds, outLock);
}

}  // namespace

NamedEvents& systemNamedEvents() {
    static PosixNamedEvents events;
    return events;
}

}  // namespace platform
