#include "platform/shell_objects.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "platform/posix/child_process.h"
#include "platform/posix/command_line.h"
#include "platform/posix/desktop_entry.h"
#include "platform/posix/native_path.h"
#include "platform/posix/spawn_settings.h"
#include "platform/posix/system_calls.h"

namespace platform {

namespace {

constexpr const char* kOpener = "xdg-open";
// Desktops start only such entries as are marked as programs.
constexpr mode_t kApplicationMode = 0755;
constexpr mode_t kLinkMode = 0644;

// A name beside `path` that nobody can foresee; empty when the system has no random numbers.
std::string nameBeside(const std::string& path) {
    std::uint64_t random = 0;
    if (retryInterrupted([&] { return getrandom(&random, sizeof random, 0); }) !=
        static_cast<ssize_t>(sizeof random)) {
        return std::string();
    }
    char name[40];
    std::snprintf(name, sizeof name, ".shortcut-%016llx.tmp", static_cast<unsigned long long>(random));
    const std::size_t separator = path.rfind('/');
    return (separator == std::string::npos ? std::string() : path.substr(0, separator + 1)) + name;
}

int writeNewFile(const std::string& path, const std::string& content, mode_t mode) {
    Descriptor file(retryInterrupted(
        [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); }));
    if (!file.isOpen()) {
        return errno;
    }
    std::size_t done = 0;
    int status = writeAll(file.get(), content.data(), content.size(), done);
    if (status == 0 && fsync(file.get()) != 0) {
        status = errno;
    }
    const int closed = file.close();
    return status != 0 ? status : closed;
}

// A reader finds the old file or the new one, never a half. Renaming replaces a link itself.
int writeEntry(const std::string& path, const std::string& content, mode_t mode) {
    const std::string aside = nameBeside(path);
    if (path.empty() || aside.empty()) {
        return path.empty() ? ENOENT : EAGAIN;
    }
    int status = writeNewFile(aside, content, mode);
    if (status == EEXIST) {
        return status;  // somebody else's
    }
    if (status == 0 && rename(aside.c_str(), path.c_str()) != 0) {
        status = errno;
    }
    if (status != 0) {
        unlink(aside.c_str());
    }
    return status;
}

bool isProgram(const struct stat& status) {
    return S_ISREG(status.st_mode) && (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
}

// What isn't there (yet) or stands in PATH is taken for a program.
bool isDocument(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && !isProgram(status);
}

std::vector<std::string> commandOf(const LinkDescription& link) {
    const std::string target = nativePath(link.target.c_str());
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

class PosixShellObjects : public ShellObjects {
public:
    int createLink(const char* linkPath, const LinkDescription& link) override;
    int createUrlLink(const char* linkPath, const char* url) override;
    bool openDocument(const char* path) override;
    // Nothing that runs takes a change of its environment from outside.
    bool broadcastEnvironment() override { return true; }
};

int PosixShellObjects::createLink(const char* linkPath, const LinkDescription& link) {
    const std::string path = nativePath(linkPath);
    ApplicationEntry entry;
    entry.name = desktopEntryName(path);
    entry.comment = link.description;
    entry.command = commandOf(link);
    entry.workDirectory = nativePath(link.workDirectory.c_str());
    entry.icon = nativePath(link.iconPath.c_str());
    return writeEntry(path, desktopEntryOf(entry), kApplicationMode);
}

int PosixShellObjects::createUrlLink(const char* linkPath, const char* url) {
    const std::string path = nativePath(linkPath);
    return writeEntry(path, desktopLinkOf(desktopEntryName(path), url != nullptr ? url : ""), kLinkMode);
}

bool PosixShellObjects::openDocument(const char* path) {
    const std::string text = path != nullptr ? path : "";
    if (isUrl(text)) {
        return startDetached({kOpener, text});
    }
    std::string file = nativePath(path);
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return false;
    }
    if (file.find('/') == std::string::npos) {
        file.insert(0, "./");  // neither an option nor a program of PATH
    }
    return (isProgram(status) && startDetached({file})) || startDetached({kOpener, file});
}

}  // namespace

ShellObjects& systemShellObjects() {
    static PosixShellObjects shell;
    return shell;
}

}  // namespace platform
