#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "description/environment_access.h"
#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "fakes/fake_console.h"
#include "support/debug_log.h"

// An environment that a test fills.
class TableEnvironment : public EnvironmentAccess {
public:
    std::map<std::string, std::string> variables;
    std::string programPath = "/opt/product/setup";
    std::string tempDirectory = "/tmp";
    std::map<std::string, bool> existing;

    bool getEnvironment(const char* name, std::string& outValue) override {
        const auto found = variables.find(name);
        if (found == variables.end()) {
            return false;
        }
        outValue = found->second;
        return true;
    }
    bool setEnvironment(const char* name, const char* value) override {
        variables[name] = value;
        return true;
    }
    bool fileExists(const char* path) override { return existing.count(path) != 0; }
    bool getProgramPath(std::string& outPath) override {
        outPath = programPath;
        return !programPath.empty();
    }
    bool getTempDirectory(std::string& outPath) override {
        outPath = tempDirectory;
        return !tempDirectory.empty();
    }
};

// A document with variables and conditions, as the classes that read a description see it.
class DescriptionTest : public testing::Test {
protected:
    void parse(const std::string& text) { document_.parseText(text.c_str()); }

    std::string valueOf(std::string_view name) { return variables_.get(name).value_or("(none)"); }
    std::string defaultOf(std::string_view name) {
        const auto reading = variables_.readDefault(name, VariableLookup::kTextLimit);
        return reading ? reading->value : "(none)";
    }

    TableEnvironment environment_;
    FakeConsole log_;
    DebugLog console_{log_};
    std::int32_t isGraphical_ = 0;
    PXML document_;
    PredefinedVariables predefined_{isGraphical_, environment_, console_};
    VariableStore variables_{predefined_, environment_, console_};
    Expressions expressions_{variables_, console_};
};
