// What the system's list of applications does: runs the registered uninstaller of an application, waits for
// its two events, and prints which of them came. For the end-to-end tests, which know no way to wait for a
// process that the uninstaller leaves behind.
//
//     run_uninstaller NAME [ARGUMENTS]
//
// Prints "NAME-OF-EVENT 1" or "... 0" for each event that was waited for. Exit code 0: the uninstaller
// started.

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/program.h"
#include "support/debug_log.h"
#include "wini/system_services.h"

namespace {

class PrintingEvent : public platform::NamedEvent {
public:
    PrintingEvent(std::string_view name, std::unique_ptr<platform::NamedEvent> event)
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

class PrintingEvents : public platform::NamedEvents {
public:
    std::unique_ptr<platform::NamedEvent> create(std::string_view name) override {
        auto event = platform::systemNamedEvents().create(name);
        return event == nullptr ? nullptr : std::make_unique<PrintingEvent>(name, std::move(event));
    }
    bool signal(std::string_view name) override { return platform::systemNamedEvents().signal(name); }
    platform::LockResult lock(std::string_view name, std::uint32_t milliseconds,
                              std::unique_ptr<platform::NamedLock>& outLock) override {
        return platform::systemNamedEvents().lock(name, milliseconds, outLock);
    }
};

}  // namespace

int programMain(const std::vector<std::string>& arguments) {
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: run_uninstaller NAME [ARGUMENTS]\n");
        return 2;
    }
    const platform::Platform system = platform::systemPlatform();
    PrintingEvents events;
    SystemServices services({system.files, system.registry, system.processes, system.environment,
                             system.console, events, system.shell, system.firewall},
                            DebugLog());
    const std::string more = arguments.size() > 2 ? arguments[2] : "";
    return services.uninstallApplication(arguments[1], more, 0, nullptr, [] { return false; }) ? 0 : 1;
}
