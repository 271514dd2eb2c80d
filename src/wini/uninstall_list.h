#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
class Registry;
}

// The system's list of installed applications: a key for each, named after the application. `flags` is a set
// of UninstallEntryFlag. An empty name is that of no application.
class UninstallList {
public:
    // The path of the list's own key below the machine's root.
    static constexpr std::string_view kListKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
    // The longest path of an action log, in bytes.
    static constexpr std::size_t kLogPathLimit = 1559;

    explicit UninstallList(platform::Registry& registry) : registry_(registry) {}

    // The path of an application's key below the machine's root.
    static std::string keyOf(std::string_view applicationName);

    // The registry's status of the entry: kRegOk when there is one, kRegNotFound when there is none; anything
    // else says why that can't be known.
    int testEntry(std::string_view applicationName, std::uint32_t flags);
    // Throws InstallerError, which names the entry and the reason, when that can't be known: an installation
    // that counts as missing would be lost.
    bool findUninstallEntry(std::string_view applicationName, std::uint32_t flags);
    // The names that contain `nameFilter` and, unless `publisher` is empty, whose value Publisher contains
    // that; case counts.
    std::vector<std::string> findEntriesByPublisher(std::string_view nameFilter, std::string_view publisher,
                                                    std::uint32_t flags);
    // The registered uninstall command.
    std::optional<std::string> readUninstallString(std::string_view applicationName, std::uint32_t flags);
    // The action log that this command names: the text between `-uninstall="` and the next `"`. None for a
    // text above the limit, too. Throws InstallerError when the command can't be read.
    std::optional<std::string> applicationLogFile(std::string_view applicationName);

private:
    int readTextStatus(std::string_view applicationName, std::string_view valueName, std::uint32_t flags,
                       std::optional<std::string>& outText);
    std::optional<std::string> readText(std::string_view applicationName, std::string_view valueName,
                                        std::uint32_t flags);

    platform::Registry& registry_;
};
