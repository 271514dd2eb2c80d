#pragma once

#include "platform/manner.h"

// The manner of a machine in memory: that of Linux or of Windows, whatever system this is. Error texts are
// those of the statuses that the machine's parts give (MemoryFileSystem::Status, RegistryStatus).
class MemoryManner : public platform::Manner {
public:
    enum class System { kLinux, kWindows };

    explicit MemoryManner(System system) : system_(system) {}

    std::string writtenPath(std::string_view path) const override;
    // Without regard to the case of ASCII letters on both systems, because the machine has none.
    std::string pathIdentity(std::string_view path) const override;
    const char* textLineEnd() const override;
    std::string errorText(int status) const override;
    std::string registryErrorText(int status) const override;

private:
    bool isWindows() const { return system_ == System::kWindows; }

    System system_;
};
