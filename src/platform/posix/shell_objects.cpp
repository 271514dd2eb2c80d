#include "platform/shell_objects.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/linux_path.h"
#include "platform/posix/child_process.h"
#include "platform/posix/command_line.h"
#include "platform/posix/desktop_entry.h"
#include "platform/posix/environment_script.h"
#include "platform/posix/file_replacement.h"
#include "platform/posix/invoking_user.h"
#include "platform/posix/spawn_settings.h"
#include "platform/posix/state_directory.h"
#include "platform/registry.h"

namespace platform {

namespace {

constexpr const char* kOpener = "xdg-open";
// Desktops start only such entries as are marked as programs.
constexpr mode_t kApplicationMode = 0755;
constexpr mode_t kLinkMode = 0644;

bool isProgram(const struct stat& status) {
    return S_ISREG(status.st_mode) && (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
}

// What doesn't exist (yet) or is found in PATH counts as a program.
bool isDocument(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && !isProgram(status);
}

std::vector<std::string> commandOf(const LinkDescription& link) {
    const std::string target = linuxPath(link.target);
    std::vector<std::string> words = splitCommandLine(link.arguments);
    words.insert(words.begin(), target);
    if (isDocument(target)) {
        words.insert(words.begin(), kOpener);
    }
    return words;
}

// "http:", "mailto:" and the like; a single letter is a drive.
bool isUrl(const std::string& text) {
    const std::size_t length =
        text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-");
    return length != std::string::npos && length > 1 && text[length] == ':';
}

bool startDetached(std::vector<std::string> words) {
    collectDroppedChildren();
    SpawnSettings settings;
    settings.detach();
    pid_t id = 0;
    const std::string program = words.front();
    if (settings.spawn(program, words, id) != 0) {
        return false;
    }
    const PosixChildProcess dropped(id);
    return true;
}

// Calls `start(words)` with what opens the path until that works.
template <typename Start>
bool openBy(std::string_view path, Start start) {
    const std::string text(path);
    if (isUrl(text)) {
        return start({kOpener, text});
    }
    std::string file = linuxPath(path);
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return false;
    }
    if (file.find('/') == std::string::npos) {
        file.insert(0, "./");  // neither an option nor a program of PATH
    }
    return (isProgram(status) && start({file})) || start({kOpener, file});
}

class PosixShellObjects : public ShellObjects {
public:
    int createLink(std::string_view linkPath, const LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;
    int createSymlink(std::string_view linkPath, std::string_view target) override {
        return replaceWithSymlink(linuxPath(linkPath), linuxPath(target));
    }
    bool openDocument(std::string_view path) override;
    bool openForUser(std::string_view path) override;
    bool broadcastEnvironment() override;
};

int PosixShellObjects::createLink(std::string_view linkPath, const LinkDescription& link) {
    const std::string path = linuxPath(linkPath);
    ApplicationEntry entry;
    entry.name = desktopEntryName(path);
    entry.comment = link.description;
    entry.command = commandOf(link);
    entry.workDirectory = linuxPath(link.workDirectory);
    entry.icon = linuxPath(link.iconPath);
    return replaceFileContent(path, desktopEntryOf(entry), kApplicationMode, ModeRule::kWithinUmask);
}

int PosixShellObjects::createUrlLink(std::string_view linkPath, std::string_view url) {
    const std::string path = linuxPath(linkPath);
    return replaceFileContent(path, desktopLinkOf(desktopEntryName(path), url), kLinkMode,
                              ModeRule::kWithinUmask);
}

bool PosixShellObjects::openDocument(std::string_view path) {
    return openForUser(path) || openBy(path, startDetached);
}

bool PosixShellObjects::openForUser(std::string_view path) {
    const std::optional<InvokingUser> user = invokingUser();
    return user && openBy(path, [&user](std::vector<std::string> words) {
               return startDetachedAs(*user, std::move(words));
           });
}

// Nothing that runs takes a change of its environment from outside, so it is the logins to come that learn
// of it.
bool PosixShellObjects::broadcastEnvironment() {
    return publishEnvironment(systemRegistry(), environmentScriptPlace()) == 0;
}

}  // namespace

ShellObjects& systemShellObjects() {
    static PosixShellObjects shell;
    return shell;
}

}  // namespace platform
