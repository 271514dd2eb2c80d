// A small uninstaller of another vendor, for the end-to-end tests. Its arguments are the steps that it takes:
//
//     register NAME VIEW COMMAND  enters an application in the list; VIEW is "native" or "x86"
//     remove NAME VIEW            takes it off the list
//     signal EVENT                signals a named event that somebody waits for
//     mark PATH                   makes a directory
//     await PATH                  waits for something to be there, up to three minutes
//     refuse-if PATH              ends with 9 if something is there
//     leave-if PATH               ends with 0 if something is there
//     second ...                  starts another of this program with the rest of the steps, and ends
//     exit CODE
//
// A step that fails ends it with 8.

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "platform/processes.h"
#include "platform/program.h"
#include "platform/registry.h"
#include "wini/uninstall_list.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr int kFailed = 8;
constexpr int kRefused = 9;
constexpr int kDone = 0;
constexpr int kMostLooks = 3600;
constexpr std::uint32_t kLookMilliseconds = 50;

// The steps that are left.
class Steps {
public:
    explicit Steps(const std::vector<std::string>& arguments) : words_(arguments) {}

    bool areOver() const { return next_ >= words_.size(); }
    std::string take() { return areOver() ? std::string() : words_[next_++]; }
    RegistryView takeView() { return take() == "x86" ? RegistryView::k32Bit : RegistryView::kNative; }

private:
    std::vector<std::string> words_;
    std::size_t next_ = 1;
};

bool registerApplication(Steps& steps) {
    platform::Registry& registry = platform::systemRegistry();
    const std::string key = UninstallList::keyOf(steps.take());
    const RegistryView view = steps.takeView();
    int created = 0;
    return registry.createKey(RegistryRoot::kLocalMachine, key, view, created) == platform::kRegOk &&
           registry.writeValue(RegistryRoot::kLocalMachine, key, view, "UninstallString",
                               {platform::kRegString, steps.take()}) == platform::kRegOk;
}

bool removeApplication(Steps& steps) {
    const std::string key = UninstallList::keyOf(steps.take());
    return platform::systemRegistry().deleteKey(RegistryRoot::kLocalMachine, key, steps.takeView()) ==
           platform::kRegOk;
}

bool awaitPath(const std::string& path) {
    for (int look = 0; look < kMostLooks; ++look) {
        if (platform::systemFileSystem().exists(path)) {
            return true;
        }
        platform::sleepMilliseconds(kLookMilliseconds);
    }
    return false;
}

bool markPath(const std::string& path) {
    return platform::systemFileSystem().createDirectory(path) == 0;
}

bool startSecond(Steps& steps) {
    std::string line;
    platform::ownImagePath(line);
    line = '"' + line + '"';
    while (!steps.areOver()) {
        line += " \"" + steps.take() + '"';
    }
    int error = 0;
    return platform::systemProcesses().start(line, "", error) != nullptr;
}

// -1 to go on, otherwise the exit code.
int takeStep(const std::string& word, Steps& steps) {
    if (word == "refuse-if") {
        return platform::systemFileSystem().exists(steps.take()) ? kRefused : -1;
    }
    if (word == "leave-if") {
        return platform::systemFileSystem().exists(steps.take()) ? kDone : -1;
    }
    if (word == "exit") {
        return std::atoi(steps.take().c_str());
    }
    const bool isDone = word == "register" ? registerApplication(steps)
                        : word == "remove" ? removeApplication(steps)
                        : word == "signal" ? platform::systemNamedEvents().signal(steps.take())
                        : word == "mark"   ? markPath(steps.take())
                        : word == "await"  ? awaitPath(steps.take())
                                           : word == "second" && startSecond(steps);
    return isDone ? -1 : kFailed;
}

}  // namespace

int programMain(const std::vector<std::string>& arguments) {
    Steps steps(arguments);
    int code = -1;
    while (code < 0 && !steps.areOver()) {
        code = takeStep(steps.take(), steps);
    }
    return code < 0 ? 0 : code;
}
