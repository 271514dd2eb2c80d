#pragma once

#include <gtest/gtest.h>

#include <string>

#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/variable_store.h"
#include "description_fixture.h"
#include "log_lines.h"

// An environment that may refuse to be changed.
class RefusingEnvironment : public TableEnvironment {
public:
    bool refusesToSet = false;

    bool setEnvironment(const char* name, const char* value) override {
        return !refusesToSet && TableEnvironment::setEnvironment(name, value);
    }
};

// A store of variables with everything that it stands on.
class StoreFixture : public testing::Test {
protected:
    std::string valueOf(const char* name) {
        char buffer[4096] = "#";
        return store_.getVariable(name, buffer, sizeof buffer) == -1 ? "(none)" : buffer;
    }
    std::string defaultOf(const char* name) {
        char buffer[4096] = "#";
        return store_.getDefaultValue(name, buffer, sizeof buffer) == -1 ? "(none)" : buffer;
    }
    const InstallVariable& record(const char* name) {
        const std::int32_t index = store_.findStored(name);
        EXPECT_GE(index, 0) << name;
        return store_.at(index < 0 ? 0 : index);
    }

    LogLines log_;
    RefusingEnvironment environment_;
    std::int32_t isGraphical_ = 0;
    PredefinedVariables predefined_{isGraphical_, environment_, log_.console()};
    VariableStore store_{predefined_, environment_, log_.console()};
    Expressions expressions_{store_, log_.console()};
};
