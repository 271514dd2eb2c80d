#pragma once

#include <optional>
#include <string>
#include <string_view>

// The environment of this process. Names and values are UTF-8.
namespace platform {

class Environment {
public:
    virtual ~Environment() = default;
    virtual std::optional<std::string> get(std::string_view name) = 0;
    // False when the name is empty or holds `=`, or the system refuses. An empty value is a value on Linux;
    // on Windows it takes the variable away, as the system defines it.
    virtual bool set(std::string_view name, std::string_view value) = 0;
};

Environment& systemEnvironment();

}  // namespace platform
