#include "platform/posix/spawn_settings.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace platform {

namespace {

constexpr short kSignalFlags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;

// A parent that ignores this signal bequeaths it, and the system forgets the exit codes of children then.
void keepExitCodesOfChildren() {
    struct sigaction action {};
    if (sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

}  // namespace

SpawnSettings::SpawnSettings() {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    sigset_t none;
    sigemptyset(&none);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_, kSignalFlags);
    note(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
}

SpawnSettings::~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
}

void SpawnSettings::setWorkDirectory(const std::string& directory) {
    if (!directory.empty()) {
        note(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
    }
}

void SpawnSettings::detach() {
    note(posix_spawnattr_setflags(&attributes_, kSignalFlags | POSIX_SPAWN_SETSID));
    note(posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    note(posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0));
    note(posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0));
}

int SpawnSettings::spawn(const std::string& program, std::vector<std::string>& words, pid_t& outId) {
    if (status_ != 0) {
        return status_;
    }
    keepExitCodesOfChildren();
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    return posix_spawnp(&outId, program.c_str(), &actions_, &attributes_, arguments.data(), environ);
}

}  // namespace platform
