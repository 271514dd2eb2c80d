#include "platform/named_events.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/file.h>

#include <cstring>
#include <ctime>
#include <string>

#include "platform/posix/system_calls.h"

namespace platform {

namespace {

constexpr mode_t kOwnerOnly = 0600;

// The name of a semaphore, or an empty text for a name that can't be one.
std::string semaphoreName(std::string_view name) {
    const bool usable = !name.empty() && name.find('/') == std::string_view::npos;
    return usable ? "/" + std::string(name) : "";
}

// A semaphore outlives its owner when that is killed. So each user holds a lock on the semaphore's file,
// which the kernel releases; a semaphore without a lock is left over from a killed owner.
Descriptor openLockFile(const std::string& name) {
    const std::string path = "/dev/shm/sem." + name.substr(1);
    return Descriptor(open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
}

void removeLeftOver(const std::string& name) {
    const Descriptor lock = openLockFile(name);
    if (lock.isOpen() && flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
        sem_unlink(name.c_str());
    }
}

timespec deadlineAfter(std::uint32_t milliseconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += milliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(milliseconds % 1000) * 1000000;
    if (deadline.tv_nsec >= 1000000000) {
        deadline.tv_nsec -= 1000000000;
        ++deadline.tv_sec;
    }
    return deadline;
}

class PosixNamedEvent : public NamedEvent {
public:
    PosixNamedEvent(sem_t* semaphore, std::string name, bool isOwner)
        : semaphore_(semaphore), name_(std::move(name)), isOwner_(isOwner), lock_(openLockFile(name_)) {
        if (lock_.isOpen()) {
            flock(lock_.get(), LOCK_SH);
        }
    }

    ~PosixNamedEvent() override {
        sem_close(semaphore_);
        if (isOwner_) {
            sem_unlink(name_.c_str());
        }
    }

    bool wait(std::uint32_t milliseconds) override {
        const timespec deadline = deadlineAfter(milliseconds);
        return retryInterrupted([&] { return sem_clockwait(semaphore_, CLOCK_MONOTONIC, &deadline); }) == 0;
    }

private:
    sem_t* const semaphore_;
    const std::string name_;
    const bool isOwner_;
    const Descriptor lock_;
};

class PosixNamedEvents : public NamedEvents {
public:
    std::unique_ptr<NamedEvent> create(std::string_view name) override;
    bool signal(std::string_view name) override;
};

std::unique_ptr<NamedEvent> PosixNamedEvents::create(std::string_view name) {
    const std::string full = semaphoreName(name);
    if (full.empty()) {
        return nullptr;
    }
    removeLeftOver(full);
    // Somebody else may create or remove the name between two calls; after a few rounds that is not an
    // accident any more.
    for (int round = 0; round < 10; ++round) {
        sem_t* semaphore = sem_open(full.c_str(), O_CREAT | O_EXCL, kOwnerOnly, 0);
        if (semaphore != SEM_FAILED) {
            return std::make_unique<PosixNamedEvent>(semaphore, full, true);
        }
        if (errno != EEXIST) {
            return nullptr;
        }
        semaphore = sem_open(full.c_str(), 0);
        if (semaphore != SEM_FAILED) {
            return std::make_unique<PosixNamedEvent>(semaphore, full, false);
        }
        if (errno != ENOENT) {
            return nullptr;
        }
    }
    return nullptr;
}

bool PosixNamedEvents::signal(std::string_view name) {
    const std::string full = semaphoreName(name);
    if (full.empty()) {
        return false;
    }
    sem_t* semaphore = sem_open(full.c_str(), 0);
    if (semaphore == SEM_FAILED) {
        return false;
    }
    // An event that is signalled already stays signalled once.
    int value = 0;
    const bool signalled = (sem_getvalue(semaphore, &value) == 0 && value > 0) || sem_post(semaphore) == 0;
    sem_close(semaphore);
    return signalled;
}

}  // namespace

NamedEvents& systemNamedEvents() {
    static PosixNamedEvents events;
    return events;
}

}  // namespace platform
