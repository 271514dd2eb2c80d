#pragma once

#include "description/log_variable_source.h"

namespace platform {
class FileSystem;
}

// Looks variables up in the action logs of other products.
class ActionLogVariables : public LogVariableSource {
public:
    explicit ActionLogVariables(platform::FileSystem& files) : files_(files) {}

    // The last variable of that name counts. `outValue` stays as it was when the result is false.
    bool findVariableInLog(const char* logPath, const char* name, std::string& outValue) override;

private:
    platform::FileSystem& files_;
};
