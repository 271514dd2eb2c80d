#pragma once

#include <spawn.h>

#include <string>
#include <vector>

namespace platform {

// What a child process starts with: default signals, and of the descriptors only the standard streams. For
// one child.
class SpawnSettings {
public:
    SpawnSettings();
    ~SpawnSettings();
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    // Empty: the present one.
    void setWorkDirectory(const std::string& directory);
    // For a child that lives on by itself: it shares neither the terminal nor its signals, and keeps no pipe
    // open.
    void detach();

    // Looks into PATH for a program without a separator, and for no other. `words` begins with the child's
    // own name. Returns 0 or the error's number; the child is collected with waitpid.
    int spawn(const std::string& program, std::vector<std::string>& words, pid_t& outId);

private:
    // Keeps the first failure.
    void note(int status) { status_ = status_ != 0 ? status_ : status; }

    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t actions_{};
    int status_ = 0;
};

}  // namespace platform
