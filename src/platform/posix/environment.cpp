#include "platform/environment.h"

#include <cstdlib>

namespace platform {

namespace {

class PosixEnvironment : public Environment {
public:
    std::optional<std::string> get(const char* name) override {
        const char* value = name != nullptr ? std::getenv(name) : nullptr;
        return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    }

    bool set(const char* name, const char* value) override {
        return name != nullptr && value != nullptr && setenv(name, value, 1) == 0;
    }
};

}  // namespace

Environment& systemEnvironment() {
    static PosixEnvironment environment;
    return environment;
}

}  // namespace platform
