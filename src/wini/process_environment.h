#pragma once

#include "description/environment_access.h"

namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// This process and its machine, as the description asks for them.
class ProcessEnvironment : public EnvironmentAccess {
public:
    // Both are borrowed and outlive this object.
    ProcessEnvironment(platform::Environment& environment, platform::FileSystem& files)
        : environment_(environment), files_(files) {}

    bool getEnvironment(const char* name, std::string& outValue) override;
    bool setEnvironment(const char* name, const char* value) override;
    bool fileExists(const char* path) override;
    bool getProgramPath(std::string& outPath) override;
    bool getTempDirectory(std::string& outPath) override;

private:
    platform::Environment& environment_;
    platform::FileSystem& files_;
};
