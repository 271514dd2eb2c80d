#include "platform/environment.h"

#include <cstdlib>

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
};

}  // namespace

Environment& systemEnvironment() {
    static PosixEnvironment environment;
    return environment;
}

}  // namespace platform
