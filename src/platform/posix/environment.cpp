#include "platform/environment.h"

#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "platform/posix/state_directory.h"
#include "platform/program.h"

namespace platform {

namespace {

class PosixEnvironment : public Environment {
public:
    std::optional<std::string> get(std::string_view name) override {
        const char* value = std::getenv(std::string(name).c_str());
        return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    }

    bool set(std::string_view name, std::string_view value) override {
        return setenv(std::string(name).c_str(), std::string(value).c_str(), 1) == 0;
    }

    bool programPath(std::string& outPath) override { return ownImagePath(outPath); }

    bool currentDirectory(std::string& outPath) override {
        struct Free {
            void operator()(char* text) const { std::free(text); }
        };
        // The system allocates as much as the path needs.
        const std::unique_ptr<char, Free> path(getcwd(nullptr, 0));
        if (path == nullptr || path.get()[0] != '/') {
            return false;  // a directory that was removed or can't be reached
        }
        outPath = path.get();
        return true;
    }

    bool stateDirectory(std::string& outPath) override {
        outPath = platform::stateDirectory();
        return true;
    }
};

}  // namespace

Environment& systemEnvironment() {
    static PosixEnvironment environment;
    return environment;
}

}  // namespace platform
