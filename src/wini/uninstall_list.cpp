#include "wini/uninstall_list.h"

#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "platform/registry.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr char kListKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr std::string_view kLogArgument = "-uninstall=\"";

RegistryView viewOf(std::uint32_t flags) {
    return (flags & kEntryIn32BitView) != 0 ? RegistryView::k32Bit : RegistryView::kNative;
}

bool isGiven(const char* text) {
    return text != nullptr && text[0] != '\0';
}

}  // namespace

const char* UninstallList::listKey() {
    return kListKey;
}

std::string UninstallList::keyOf(const char* applicationName) {
    return std::string(kListKey) + '\\' + applicationName;
}

bool UninstallList::findUninstallEntry(const char* applicationName, std::uint32_t flags) {
    return isGiven(applicationName) &&
           registry_.testKey(RegistryRoot::kLocalMachine, keyOf(applicationName).c_str(), viewOf(flags)) ==
               platform::kRegOk;
}

void UninstallList::findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                           const char* publisher, std::uint32_t flags) {
    std::vector<std::string> names;
    if (registry_.listKeys(RegistryRoot::kLocalMachine, kListKey, viewOf(flags), names) != platform::kRegOk) {
        return;
    }
    for (const std::string& name : names) {
        if (name.find(nameFilter) == std::string::npos) {
            continue;
        }
        std::string entryPublisher;
        if (!isGiven(publisher) || (readText(name.c_str(), "Publisher", entryPublisher, flags) &&
                                    entryPublisher.find(publisher) != std::string::npos)) {
            outNames.push_back(name);
        }
    }
}

bool UninstallList::readText(const char* applicationName, const char* valueName, std::string& outText,
                             std::uint32_t flags) {
    platform::RegistryValue value;
    if (!isGiven(applicationName) ||
        registry_.readValue(RegistryRoot::kLocalMachine, keyOf(applicationName).c_str(), viewOf(flags),
                            valueName, value) != platform::kRegOk ||
        (value.type != platform::kRegString && value.type != platform::kRegExpandString)) {
        return false;
    }
    outText = std::move(value.data);
    return true;
}

bool UninstallList::readUninstallString(const char* applicationName, std::string& outCommand,
                                        std::uint32_t flags) {
    return readText(applicationName, "UninstallString", outCommand, flags);
}

bool UninstallList::getApplicationLogFile(const char* applicationName, char* buffer, int size) {
    OUtils::copyText(buffer, "", size);
    std::string command;
    if (!readUninstallString(applicationName, command, 0)) {
        return false;
    }
    const std::size_t argument = command.find(kLogArgument);
    const std::size_t start = argument + kLogArgument.size();
    const std::size_t end = argument == std::string::npos ? argument : command.find('"', start);
    if (end == std::string::npos || static_cast<std::int64_t>(end - start) >= size) {
        return false;
    }
    OUtils::copyText(buffer, command.substr(start, end - start).c_str(), size);
    return true;
}
