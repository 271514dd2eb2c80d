#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/memory_file_system.h"
#include "platform/shell_objects.h"

// A desktop whose links are files, as on both systems, so that they can be undone like these.
class RehearsedDesktop : public platform::ShellObjects {
public:
    // Borrowed. `actions` gets a line for each document that is opened.
    RehearsedDesktop(MemoryFileSystem& files, bool hasSymlinks, std::vector<std::string>& actions)
        : files_(files), hasSymlinks_(hasSymlinks), actions_(actions) {}

    // What the file is that such a link is made of; empty for other files.
    std::string linkText(std::string_view content) const;

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;
    int createSymlink(std::string_view linkPath, std::string_view target) override;
    bool openDocument(std::string_view path) override;
    bool openForUser(std::string_view) override { return false; }
    bool broadcastEnvironment() override { return true; }

private:
    int write(std::string_view linkPath, const std::string& text);

    MemoryFileSystem& files_;
    bool hasSymlinks_;
    std::vector<std::string>& actions_;
};
