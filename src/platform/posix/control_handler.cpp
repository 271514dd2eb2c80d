#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/console_device.h"
#include "platform/posix/terminal_mode.h"

namespace platform {

namespace {

struct SignalEvent {
    int signal;
    ControlEvent event;
};

constexpr SignalEvent kSignalEvents[] = {
    {SIGINT, ControlEvent::kInterrupt},
    {SIGQUIT, ControlEvent::kBreak},
    {SIGHUP, ControlEvent::kClose},
    {SIGTERM, ControlEvent::kShutdown},
};

std::atomic<ControlHandler> controlHandler{nullptr};

// One that the caller wants ignored (nohup, background jobs of old shells) stays ignored.
void addUnlessIgnored(sigset_t& set, int signal) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
        sigaddset(&set, signal);
    }
}

// The signals to serve: the events, and what stops and continues a job, so that a stopped
// program doesn't leave the terminal without echo.
sigset_t servedSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const SignalEvent& entry : kSignalEvents) {
        addUnlessIgnored(set, entry.signal);
    }
    addUnlessIgnored(set, SIGTSTP);
    addUnlessIgnored(set, SIGCONT);
    return set;
}

// Does to the process what the system does without us.
void takeDefaultAction(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    raise(signal);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);  // a stopped process continues here
}

void endBySignal(int signal) {
    restoreTerminalMode();
    takeDefaultAction(signal);
}

void dispatch(int signal) {
    if (signal == SIGTSTP) {
        stopWithTerminalRestored([] { takeDefaultAction(SIGTSTP); });
    } else if (signal == SIGCONT) {
        retakeTerminalMode();
    }
    for (const SignalEvent& entry : kSignalEvents) {
        const ControlHandler handler = controlHandler;
        if (entry.signal == signal && (handler == nullptr || !handler(entry.event))) {
            endBySignal(signal);
        }
    }
}

void serveSignals(sigset_t set) {
    for (;;) {
        int signal = 0;
        if (sigwait(&set, &signal) == 0) {
            dispatch(signal);
        }
    }
}

// Blocks the signals here, and thereby in each thread that is started later; only the serving thread takes
// them.
bool startServing() {
    const sigset_t set = servedSignals();
    if (pthread_sigmask(SIG_BLOCK, &set, nullptr) != 0) {
        return false;
    }
    try {
        std::thread(serveSignals, set).detach();
    } catch (const std::system_error&) {
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
        return false;
    }
    return true;
}

}  // namespace

bool setControlHandler(ControlHandler handler) {
    static std::mutex mutex;
    static bool serving = false;
    const std::lock_guard lock(mutex);
    controlHandler = handler;
    serving = serving || startServing();
    return serving;
}

}  // namespace platform
