// What the system's list of applications does: runs the registered uninstaller of an application, waits for
// its two events, and tells which of them came. For the end-to-end tests, which know no way to wait for a
// process that the uninstaller leaves behind.
//
//     run_uninstaller NAME [ARGUMENTS]
//
// Prints "NAME-OF-EVENT 1" or "... 0" for each event that was waited for. Exit code 0: the uninstaller
// started.

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/program.h"
#include "support/p_console.h"
#include "wini/external_uninstaller.h"
#include "wini/program_runner.h"

namespace {

class TellingEvent : public platform::NamedEvent {
public:
    TellingEvent(const char* name, std::unique_ptr<platform::NamedEvent> event)
        : name_(name), event_(std::move(event)) {}

    bool wait(std::uint32_t milliseconds) override {
        const bool came = event_->wait(milliseconds);
        std::printf("%s %d\n", name_.c_str(), came ? 1 : 0);
        return came;
    }

private:
    std::string name_;
    std::unique_ptr<platform::NamedEvent> event_;
};

class TellingEvents : public platform::NamedEvents {
public:
    std::unique_ptr<platform::NamedEvent> create(const char* name) override {
        auto event = platform::systemNamedEvents().create(name);
        return event == nullptr ? nullptr : std::make_unique<TellingEvent>(name, std::move(event));
    }
    bool signal(const char* name) override { return platform::systemNamedEvents().signal(name); }
};

}  // namespace

int programMain(const std::vector<std::string>& arguments) {
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: run_uninstaller NAME [ARGUMENTS]\n");
        return 2;
    }
    platform::Platform machine = platform::systemPlatform();
    PConsole log;
    log.setEnabled(false);
    TellingEvents events;
    ProgramRunner runner(machine.processes, machine.shell, log);
    ExternalUninstaller uninstaller({machine.registry, machine.processes, events, runner}, log);
    const char* more = arguments.size() > 2 ? arguments[2].c_str() : nullptr;
    return uninstaller.uninstallApplication(arguments[1].c_str(), more, 0, nullptr) ? 0 : 1;
}
