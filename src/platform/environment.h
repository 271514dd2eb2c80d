#pragma once

#include <optional>
#include <string>

// The environment of this process. Names and values are UTF-8.
namespace platform {

class Environment {
public:
    virtual ~Environment() = default;
    virtual std::optional<std::string> get(const char* name) = 0;
    // False when the name is empty or holds `=`, or the system refuses. An empty value is a value on Linux;
    // on Windows it takes the variable away, as the system defines it.
    virtual bool set(const char* name, const char* value) = 0;
};

Environment& systemEnvironment();

}  // namespace platform
