#include "wini/uninstall_list.h"

#include "base/errors.h"
#include "contracts/system_operations.h"
#include "platform/error_text.h"
#include "platform/registry.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr std::string_view kLogArgument = "-uninstall=\"";

RegistryView viewOf(std::uint32_t flags) {
    return (flags & kEntryIn32BitView) != 0 ? RegistryView::k32Bit : RegistryView::kNative;
}

// A name that no key can have is that of no application.
bool isKnown(int status) {
    return status == platform::kRegOk || status == platform::kRegNotFound ||
           status == platform::kRegBadArgument;
}

void requireKnown(std::string_view applicationName, int status) {
    if (!isKnown(status)) {
        const std::string text =
            "The entry of \"" + std::string(applicationName) +
            "\" in the list of installed applications can't be read: " + platform::registryErrorText(status);
        throw InstallerError("ERROR: %s", text.c_str());
    }
}

}  // namespace

std::string UninstallList::keyOf(std::string_view applicationName) {
    return std::string(kListKey) + '\\' + std::string(applicationName);
}

int UninstallList::testEntry(std::string_view applicationName, std::uint32_t flags) {
    return applicationName.empty()
               ? platform::kRegNotFound
               : registry_.testKey(RegistryRoot::kLocalMachine, keyOf(applicationName), viewOf(flags));
}

bool UninstallList::findUninstallEntry(std::string_view applicationName, std::uint32_t flags) {
    const int status = testEntry(applicationName, flags);
    requireKnown(applicationName, status);
    return status == platform::kRegOk;
}

std::vector<std::string> UninstallList::findEntriesByPublisher(std::string_view nameFilter,
                                                               std::string_view publisher,
                                                               std::uint32_t flags) {
    std::vector<std::string> names;
    if (registry_.listKeys(RegistryRoot::kLocalMachine, kListKey, viewOf(flags), names) != platform::kRegOk) {
        return {};
    }
    std::erase_if(names, [&](const std::string& name) {
        if (name.find(nameFilter) == std::string::npos) {
            return true;
        }
        return !publisher.empty() &&
               readText(name, "Publisher", flags).value_or("").find(publisher) == std::string::npos;
    });
    return names;
}

std::optional<std::string> UninstallList::readText(std::string_view applicationName,
                                                   std::string_view valueName, std::uint32_t flags) {
    std::optional<std::string> text;
    readTextStatus(applicationName, valueName, flags, text);
    return text;
}

int UninstallList::readTextStatus(std::string_view applicationName, std::string_view valueName,
                                  std::uint32_t flags, std::optional<std::string>& outText) {
    outText.reset();
    if (applicationName.empty()) {
        return platform::kRegNotFound;
    }
    platform::RegistryValue value;
    const int status = registry_.readValue(RegistryRoot::kLocalMachine, keyOf(applicationName), viewOf(flags),
                                           valueName, value);
    const bool isText = value.type == platform::kRegString || value.type == platform::kRegExpandString;
    if (status == platform::kRegOk && isText) {
        outText = std::move(value.data);
    }
    return status;
}

std::optional<std::string> UninstallList::readUninstallString(std::string_view applicationName,
                                                              std::uint32_t flags) {
    return readText(applicationName, "UninstallString", flags);
}

std::optional<std::string> UninstallList::applicationLogFile(std::string_view applicationName) {
    std::optional<std::string> text;
    requireKnown(applicationName, readTextStatus(applicationName, "UninstallString", 0, text));
    const std::string command = text.value_or("");
    const std::size_t argument = command.find(kLogArgument);
    if (argument == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t start = argument + kLogArgument.size();
    const std::size_t end = command.find('"', start);
    if (end == std::string::npos || end - start > kLogPathLimit) {
        return std::nullopt;
    }
    return command.substr(start, end - start);
}
