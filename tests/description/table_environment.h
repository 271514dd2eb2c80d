#pragma once

#include <map>
#include <set>
#include <string>

#include "description/environment_access.h"

// The surroundings of the process as tables that a test fills.
class TableEnvironment : public EnvironmentAccess {
public:
    std::map<std::string, std::string> variables;
    std::set<std::string> files;
    std::string programPath = "C:\\Setup\\setup.exe";  // empty: can't be told
    std::string tempDirectory = "C:\\Temp";            // empty: there is none
    bool refusesToSet = false;

    bool getEnvironment(const char* name, std::string& outValue) override {
        const auto found = variables.find(name);
        if (found == variables.end()) {
            return false;
        }
        outValue = found->second;
        return true;
    }
    bool setEnvironment(const char* name, const char* value) override {
        if (!refusesToSet) {
            variables[name] = value;
        }
        return !refusesToSet;
    }
    bool fileExists(const char* path) override { return files.contains(path); }
    bool getProgramPath(std::string& outPath) override {
        outPath = programPath;
        return !programPath.empty();
    }
    bool getTempDirectory(std::string& outPath) override {
        outPath = tempDirectory;
        return !tempDirectory.empty();
    }
};
