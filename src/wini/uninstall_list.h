#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {
class Registry;
}

// The system's list of installed applications: a key for each, named after the application. `flags` is a set
// of UninstallEntryFlag.
class UninstallList {
public:
    explicit UninstallList(platform::Registry& registry) : registry_(registry) {}

    // The path of the list's own key below the machine's root.
    static const char* listKey();
    // The path of an application's key below the machine's root; not null.
    static std::string keyOf(const char* applicationName);

    bool findUninstallEntry(const char* applicationName, std::uint32_t flags);
    // Appends the names that contain `nameFilter` and, unless `publisher` is null or empty, whose value
    // Publisher contains that; case counts.
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                const char* publisher, std::uint32_t flags);
    // The registered uninstall command. False when there is none.
    bool readUninstallString(const char* applicationName, std::string& outCommand, std::uint32_t flags);
    // The action log that this command names: the text between `-uninstall="` and the next `"`. False when
    // there is none or it doesn't fit `size` bytes; `buffer` is empty then.
    bool getApplicationLogFile(const char* applicationName, char* buffer, int size);

private:
    bool readText(const char* applicationName, const char* valueName, std::string& outText,
                  std::uint32_t flags);

    platform::Registry& registry_;
};
