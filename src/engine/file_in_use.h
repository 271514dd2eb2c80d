#pragma once

#include <cstdint>
#include <string_view>

class Report;
class SystemOperations;
namespace platform {
class FileSystem;
}

// Frees files that running programs hold.
class FileInUse {
public:
    // How long a program gets to end.
    static constexpr std::uint32_t kProgramEndMilliseconds = 2000;

    // All of them outlive this object.
    FileInUse(platform::FileSystem& files, SystemOperations& system, Report& report)
        : files_(files), system_(system), report_(report) {}

    // Stops the program that runs from this very file, waits up to `waitMilliseconds` for its end, and
    // deletes the file. Only programs are treated: a path without ".exe" is left alone. True when the file
    // was deleted.
    bool deleteFileInUse(std::string_view path, std::uint32_t waitMilliseconds = kProgramEndMilliseconds);

private:
    void stopProgram(std::string_view path, std::uint32_t waitMilliseconds);

    platform::FileSystem& files_;
    SystemOperations& system_;
    Report& report_;
};
