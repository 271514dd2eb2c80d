#include "wini/uninstall_list.h"

#include "contracts/system_operations.h"
#include "platform/registry.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr std::string_view kLogArgument = "-uninstall=\"";

RegistryView viewOf(std::uint32_t flags) {
    return (flags & kEntryIn32BitView) != 0 ? RegistryView::k32Bit : RegistryView::kNative;
}

}  // namespace

std::string UninstallList::keyOf(std::string_view applicationName) {
    return std::string(kListKey) + '\\' + std::string(applicationName);
}

bool UninstallList::findUninstallEntry(std::string_view applicationName, std::uint32_t flags) {
    return !applicationName.empty() && registry_.testKey(RegistryRoot::kLocalMachine, keyOf(applicationName),
                                                         viewOf(flags)) == platform::kRegOk;
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
    platform::RegistryValue value;
    if (applicationName.empty() ||
        registry_.readValue(RegistryRoot::kLocalMachine, keyOf(applicationName), viewOf(flags), valueName,
                            value) != platform::kRegOk ||
        (value.type != platform::kRegString && value.type != platform::kRegExpandString)) {
        return std::nullopt;
    }
    return std::move(value.data);
}

std::optional<std::string> UninstallList::readUninstallString(std::string_view applicationName,
                                                              std::uint32_t flags) {
    return readText(applicationName, "UninstallString", flags);
}

std::optional<std::string> UninstallList::applicationLogFile(std::string_view applicationName) {
    const std::string command = readUninstallString(applicationName, 0).value_or("");
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
