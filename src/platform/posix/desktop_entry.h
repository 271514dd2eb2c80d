#pragma once

#include <string>
#include <string_view>
#include <vector>

// The texts of freedesktop desktop entries (Desktop Entry Specification 1.5).
namespace platform {

// What an entry of the type Application says; empty texts but the name and the command are left out.
struct ApplicationEntry {
    std::string name;
    std::string comment;
    std::vector<std::string> command;  // the program and its arguments, as the program is to get them
    std::string workDirectory;
    std::string icon;
};

std::string desktopEntryOf(const ApplicationEntry& entry);
// An entry of the type Link.
std::string desktopLinkOf(std::string_view name, std::string_view url);

// The name under which a desktop shows the entry in this file: its base name without the usual endings.
std::string desktopEntryName(std::string_view linkPath);

}  // namespace platform
