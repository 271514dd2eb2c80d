#pragma once

#include <optional>
#include <string>
#include <string_view>

// The environment of this process: its variables, its program, its directories. Names and values are UTF-8.
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
    // The directory from which relative paths count. False when the system doesn't give it; `outPath` keeps
    // its value then.
    virtual bool currentDirectory(std::string& outPath) = 0;
    // Where this machine's records of its products are kept: $TANDREL_STATE_DIR, else the system's own place
    // for such data, which only administrators may write to. The directory may not exist yet. False when the
    // system doesn't give it; `outPath` keeps its value then.
    virtual bool stateDirectory(std::string& outPath) = 0;
};

Environment& systemEnvironment();

}  // namespace platform
