#pragma once

#include <string>

// Finds a variable in the action log of another installed product; the engine knows the format.
class LogVariableSource {
public:
    virtual ~LogVariableSource() = default;

    // False when the log can't be read or doesn't hold the variable. Names ignore ASCII case.
    virtual bool findVariableInLog(const char* logPath, const char* name, std::string& outValue) = 0;
};
