#include "round_trip.h"

#include <memory>

#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/walking_ui.h"
#include "machine_state.h"
#include "package/package_writer.h"
#include "session/session_flags.h"
#include "wini/wini.h"

namespace {

constexpr const char* kPackage = "/kit/package";
constexpr const char* kLog = "/product/install.log";
constexpr const char* kLogCopy = "/kit/install.log";

void pack(FakePlatform& machine, const ProductCase& product) {
    std::vector<PackageFile> list = {{"/kit/src/install.xml", "install.xml", "install.xml"}};
    machine.files.addFile("/kit/src/install.xml", describe(product));
    const auto add = [&](const std::string& name, const std::string& content) {
        machine.files.addFile("/kit/src/" + name, content);
        list.push_back({"/kit/src/" + name, name, name});
    };
    for (const Item& item : product.items) {
        if (item.kind == ItemKind::kFile) {
            const std::string path = filePathOf(item);
            add(path.substr(path.rfind('/') + 1), installedContentOf(item));
        } else if (item.kind == ItemKind::kModifyFile) {
            list.push_back({item.name("/kit/src/change"), item.name("change"), item.name("change")});
        } else if (item.kind == ItemKind::kCreateFile) {
            add(item.name("created"), "created");
        }
    }
    PackageOptions options;
    options.stripes = 1;
    options.level = 1;
    PackageWriter(machine.files).write(list, options, kPackage);
}

// Returns whether the session came to its end, and its result.
bool runSession(platform::Platform platform, const char* path, std::uint32_t flags, int& outResult) {
    FakeConsole log;
    const DebugLog debugLog(log);
    SystemServices services(platform, debugLog);
    AnswersFile answers(platform.files);
    auto session = std::make_unique<Wini>(platform, services, answers, debugLog, WiniArguments());
    WalkingUI ui(*session);
    if (session->loadCabinet(path, 0, flags) != 0) {
        return false;
    }
    outResult = session->run(&ui, &log);
    if (outResult == 0 && session->hasErrors()) {
        outResult = -1;
    }
    const bool finished = session->isFinished();
    session->releaseSession();
    return finished;
}

}  // namespace

std::vector<std::string> runRoundTrip(const ProductCase& product) {
    FakePlatform machine;
    DiskShellObjects shell(machine.files);
    const platform::Platform platform{machine.files,
                                      machine.registry,
                                      machine.processes,
                                      machine.environment,
                                      machine.console,
                                      machine.events,
                                      shell,
                                      machine.firewall};
    machine.files.addDirectory("/tmp");
    prepareMachine(machine, product);
    pack(machine, product);
    const MachineState start = takeState(machine);

    int result = 0;
    if (!runSession(platform, kPackage, kSessionBackup, result)) {
        return {"The installation doesn't come to its end"};
    }
    if (!machine.files.hasFile(kLog)) {
        return {"The installation leaves no log"};
    }
    useMachine(machine, product);
    machine.files.addFile(kLogCopy, machine.files.content(kLog));
    if (!runSession(platform, kLogCopy, kSessionActionLog, result)) {
        return {"The uninstallation doesn't come to its end"};
    }
    std::vector<std::string> found = differences(expectedEnd(start, product), takeState(machine));
    if (result != 0 && !mayLeaveSomething(product)) {
        found.push_back("The uninstallation tells of an error");
    }
    return found;
}

ProductCase shrink(ProductCase failing) {
    for (std::size_t i = 0; i < failing.items.size();) {
        ProductCase smaller = failing;
        smaller.items.erase(smaller.items.begin() + static_cast<std::ptrdiff_t>(i));
        if (runRoundTrip(smaller).empty()) {
            ++i;
        } else {
            failing = std::move(smaller);
        }
    }
    const auto keepIfFailing = [&failing](ProductCase smaller) {
        if (!runRoundTrip(smaller).empty()) {
            failing = std::move(smaller);
        }
    };
    for (bool ProductCase::*circumstance :
         {&ProductCase::foreignFile, &ProductCase::firewallOff, &ProductCase::registers}) {
        ProductCase smaller = failing;
        smaller.*circumstance = false;
        keepIfFailing(std::move(smaller));
    }
    for (std::size_t i = 0; i < failing.items.size(); ++i) {
        for (bool Item::*property : {&Item::option, &Item::earlier, &Item::touched}) {
            ProductCase smaller = failing;
            smaller.items[i].*property = false;
            keepIfFailing(std::move(smaller));
        }
        for (std::size_t line = failing.items[i].lines.size(); line > 0; --line) {
            ProductCase smaller = failing;
            std::vector<std::string>& lines = smaller.items[i].lines;
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(line) - 1);
            keepIfFailing(std::move(smaller));
        }
    }
    return failing;
}
