#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/environment.h"

// An environment in memory. An empty value is a value.
class MemoryEnvironment : public platform::Environment {
public:
    std::map<std::string, std::string> variables;
    std::set<std::string> refused;                 // setting these fails
    std::string program = "D:\\setup\\setup.exe";  // empty: the path can't be read
    std::string current = "/current";              // empty: it isn't known
    std::string state = "/var/state";              // empty: there is none

    std::optional<std::string> get(std::string_view name) override {
        const auto found = variables.find(std::string(name));
        return found == variables.end() ? std::nullopt : std::optional<std::string>(found->second);
    }

    bool set(std::string_view name, std::string_view value) override {
        const std::string key(name);
        if (key.empty() || key.find('=') != std::string::npos || refused.count(key) != 0) {
            return false;
        }
        variables[key] = value;
        return true;
    }

    bool programPath(std::string& outPath) override { return give(program, outPath); }
    bool currentDirectory(std::string& outPath) override { return give(current, outPath); }
    bool stateDirectory(std::string& outPath) override { return give(state, outPath); }

private:
    static bool give(const std::string& path, std::string& outPath) {
        if (path.empty()) {
            return false;
        }
        outPath = path;
        return true;
    }
};
