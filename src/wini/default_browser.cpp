#include "wini/default_browser.h"

#include <string>
#include <string_view>

#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/shell_objects.h"

namespace {

constexpr std::string_view kPageEnding = ".htm";
constexpr std::string_view kOpenCommand = "\\shell\\open\\command";
constexpr std::string_view kPlace = "%1";

// The default value of a class key; empty when there is no such text.
std::string classText(platform::Registry& registry, const std::string& path) {
    platform::RegistryValue value;
    const int status = registry.readValue(platform::RegistryRoot::kClassesRoot, path,
                                          platform::RegistryView::kNative, "", value);
    return status == platform::kRegOk && value.type == platform::kRegString ? value.data : std::string();
}

std::string pageCommand(platform::Registry& registry) {
    const std::string pageClass = classText(registry, std::string(kPageEnding));
    return pageClass.empty() ? std::string() : classText(registry, pageClass + std::string(kOpenCommand));
}

std::string commandWith(const std::string& command, std::string_view url) {
    std::string text;
    std::size_t start = 0;
    for (std::size_t place; (place = command.find(kPlace, start)) != std::string::npos;) {
        text.append(command, start, place - start).append(url);
        start = place + kPlace.size();
    }
    return start == 0 ? command + ' ' + std::string(url) : text.append(command, start);
}

}  // namespace

int openInDefaultBrowser(const platform::Platform& platform, std::string_view url) {
    if (url.empty()) {
        return platform::kRegBadArgument;
    }
    // The command may be one that the user chose: nothing for an administrator's rights.
    if (platform.shell.openForUser(url)) {
        return 0;
    }
    const std::string command = pageCommand(platform.registry);
    if (command.empty()) {
        return platform.shell.openDocument(url) ? 0 : platform::kRegNotFound;
    }
    int error = 0;
    platform.processes.start(commandWith(command, url), "", error);
    return error;
}
