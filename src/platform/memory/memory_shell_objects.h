#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/shell_objects.h"

// A desktop in memory: keeps the links that were made and what was opened, and fails where it is asked to.
class MemoryShellObjects : public platform::ShellObjects {
public:
    std::map<std::string, platform::LinkDescription> links;  // by path
    std::map<std::string, std::string> urlLinks;             // path -> URL
    std::map<std::string, std::string> symlinks;             // path -> target
    std::vector<std::string> opened;                         // also what failed to open
    std::vector<std::string> openedForUser;
    int broadcasts = 0;

    int linkError = 0;  // non-zero: no link can be made
    bool opens = true;
    bool hasRaisedRights = false;  // and a user to open for
    bool broadcastWorks = true;

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override {
        if (linkError == 0) {
            links[std::string(linkPath)] = link;
        }
        return linkError;
    }
    int createUrlLink(std::string_view linkPath, std::string_view url) override {
        if (linkError == 0) {
            urlLinks[std::string(linkPath)] = url;
        }
        return linkError;
    }
    int createSymlink(std::string_view linkPath, std::string_view target) override {
        if (linkError == 0) {
            symlinks[std::string(linkPath)] = target;
        }
        return linkError;
    }
    bool openDocument(std::string_view path) override {
        opened.emplace_back(path);
        return opens;
    }
    bool openForUser(std::string_view path) override {
        if (hasRaisedRights) {
            openedForUser.emplace_back(path);
        }
        return hasRaisedRights;
    }
    bool broadcastEnvironment() override {
        ++broadcasts;
        return broadcastWorks;
    }
};
