#pragma once

#include <optional>
#include <string>
#include <string_view>

// The environment of this process: its variables and its program. Names and values are UTF-8.
namespace platform {

class Environment {
public:
    virtual ~Environment() = default;
    virtual std::optional<std::string> get(std::string_view name) = 0;
    // False when the name is empty or holds `=`, or the system refuses. An empty value is a value on Linux;
    // on Windows it takes the variable away, as the system defines it.
    virtual bool set(std::string_view name, std::string_view value) = 0;
    // The full path of the running program. False when the system doesn't give it; `outPath` keeps its value
    // then.
    virtual bool programPath(std::string& outPath) = 0;
};

Environment& systemEnvironment();

}  // namespace platform
