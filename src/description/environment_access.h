#pragma once

#include <string>

// What the description asks of the process and the machine that it runs on. Texts are UTF-8.
class EnvironmentAccess {
public:
    virtual ~EnvironmentAccess() = default;

    // False when the variable isn't defined. The value is whole, however long it is.
    virtual bool getEnvironment(const char* name, std::string& outValue) = 0;
    // Sets a variable of this process. False when the system refuses.
    virtual bool setEnvironment(const char* name, const char* value) = 0;
    // True when there is anything of that name.
    virtual bool fileExists(const char* path) = 0;
    // The full path of the running executable; false on failure.
    virtual bool getProgramPath(std::string& outPath) = 0;
    // The directory for temporary files, without a trailing separator; false on failure.
    virtual bool getTempDirectory(std::string& outPath) = 0;
};
