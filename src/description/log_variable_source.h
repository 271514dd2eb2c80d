#pragma once

#include <optional>
#include <string>
#include <string_view>

// Finds a variable in the action log of another installed product; the engine knows the format.
class LogVariableSource {
public:
    virtual ~LogVariableSource() = default;

    // Nothing when the log can't be read or doesn't hold the variable. Names ignore ASCII case.
    virtual std::optional<std::string> findVariableInLog(std::string_view logPath, std::string_view name) = 0;
};
