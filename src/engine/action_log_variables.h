#pragma once

#include "description/log_variable_source.h"

namespace platform {
class FileSystem;
}

// Looks variables up in the action logs of other products.
class ActionLogVariables : public LogVariableSource {
public:
    explicit ActionLogVariables(platform::FileSystem& files) : files_(files) {}

    // The last variable of that name counts.
    std::optional<std::string> findVariableInLog(std::string_view logPath, std::string_view name) override;

private:
    platform::FileSystem& files_;
};
