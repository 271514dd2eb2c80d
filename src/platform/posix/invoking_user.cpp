#include "platform/posix/invoking_user.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include "platform/posix/child_process.h"
#include "platform/posix/system_calls.h"

namespace platform {

namespace {

// What describes a person or how that person became root.
constexpr std::string_view kPersonal[] = {"HOME=",
                                          "USER=",
                                          "LOGNAME=",
                                          "SHELL=",
                                          "MAIL=",
                                          "XDG_RUNTIME_DIR=",
                                          "SUDO_",
                                          "PKEXEC_UID=",
                                          "DBUS_SESSION_BUS_ADDRESS=",
                                          "XDG_CONFIG_HOME=",
                                          "XDG_CACHE_HOME=",
                                          "XDG_DATA_HOME="};

std::optional<uid_t> numberIn(const char* variable) {
    const char* text = std::getenv(variable);
    const std::string_view digits = text != nullptr ? text : "";
    uid_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = !digits.empty() && error == std::errc() && end == digits.data() + digits.size();
    return whole ? std::optional(number) : std::nullopt;
}

std::vector<gid_t> groupsOf(const char* name, gid_t group) {
    int count = 32;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    if (getgrouplist(name, group, groups.data(), &count) < 0) {
        groups.resize(static_cast<std::size_t>(count));
        if (getgrouplist(name, group, groups.data(), &count) < 0) {
            return {group};
        }
    }
    groups.resize(static_cast<std::size_t>(count));
    return groups;
}

bool isPersonal(std::string_view variable) {
    for (const std::string_view front : kPersonal) {
        if (variable.starts_with(front)) {
            return true;
        }
    }
    return false;
}

bool belongsTo(const std::string& path, uid_t user) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && status.st_uid == user;
}

// For execve and its like; the texts are borrowed.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// From here to the program's start only what a child of a process with threads may call.

bool takeRights(const InvokingUser& user) {
    return setgroups(user.groups.size(), user.groups.data()) == 0 &&
           setresgid(user.group, user.group, user.group) == 0 && setresuid(user.id, user.id, user.id) == 0;
}

bool detachStreams() {
    const int nothing = open("/dev/null", O_RDWR);
    return nothing >= 0 && dup2(nothing, STDIN_FILENO) >= 0 && dup2(nothing, STDOUT_FILENO) >= 0 &&
           dup2(nothing, STDERR_FILENO) >= 0;
}

void resetSignals() {
    for (int signal = 1; signal < NSIG; ++signal) {
        std::signal(signal, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// `failure` closes when the program starts, and gets a byte when it doesn't.
[[noreturn]] void become(const InvokingUser& user, char* const* words, char* const* environment,
                         int failure) {
    constexpr int kFailure = STDERR_FILENO + 1;
    resetSignals();
    if (setsid() >= 0 && detachStreams() &&
        (failure == kFailure || dup3(failure, kFailure, O_CLOEXEC) >= 0)) {
        closefrom(kFailure + 1);
        if (takeRights(user)) {
            execvpe(words[0], words, environment);
        }
        failure = kFailure;
    }
    const char failed = 1;
    [[maybe_unused]] const ssize_t written = write(failure, &failed, 1);
    _exit(127);
}

}  // namespace

std::optional<InvokingUser> invokingUser() {
    std::optional<uid_t> id = numberIn("SUDO_UID");
    id = id ? id : numberIn("PKEXEC_UID");
    if (geteuid() != 0 || !id || *id == 0) {
        return std::nullopt;
    }
    std::vector<char> buffer(64 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(*id, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return std::nullopt;
    }
    return InvokingUser{*id, entry.pw_gid, groupsOf(entry.pw_name, entry.pw_gid), entry.pw_name,
                        entry.pw_dir};
}

std::vector<std::string> environmentOf(const InvokingUser& user) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!isPersonal(*variable)) {
            variables.emplace_back(*variable);
        }
    }
    variables.push_back("HOME=" + user.home);
    variables.push_back("USER=" + user.name);
    variables.push_back("LOGNAME=" + user.name);
    const std::string runtime = "/run/user/" + std::to_string(user.id);
    if (belongsTo(runtime, user.id)) {
        variables.push_back("XDG_RUNTIME_DIR=" + runtime);
        variables.push_back("DBUS_SESSION_BUS_ADDRESS=unix:path=" + runtime + "/bus");
    }
    return variables;
}

bool startDetachedAs(const InvokingUser& user, std::vector<std::string> words) {
    std::vector<std::string> variables = environmentOf(user);
    const std::vector<char*> arguments = pointersTo(words);
    const std::vector<char*> environment = pointersTo(variables);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    const Descriptor result(ends[0]);
    Descriptor failure(ends[1]);
    const pid_t child = fork();
    if (child == 0) {
        become(user, arguments.data(), environment.data(), failure.get());
    }
    failure.close();
    if (child < 0) {
        return false;
    }
    const PosixChildProcess dropped(child);
    char failed = 0;
    return retryInterrupted([&] { return read(result.get(), &failed, 1); }) == 0;
}

}  // namespace platform
