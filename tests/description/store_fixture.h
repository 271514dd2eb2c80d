#pragma once

#include <gtest/gtest.h>

#include <string>

#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/variable_store.h"
#include "log_lines.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"

// A store of variables with everything that it needs.
class StoreFixture : public testing::Test {
protected:
    std::string valueOf(std::string_view name) { return store_.get(name).value_or("(none)"); }
    std::string defaultOf(std::string_view name) {
        const auto reading = store_.readDefault(name, VariableLookup::kTextLimit);
        return reading ? reading->value : "(none)";
    }
    const InstallVariable& record(const char* name) {
        const std::optional<std::int32_t> index = store_.find(name);
        EXPECT_TRUE(index) << name;
        return store_.at(index.value_or(0));
    }

    LogLines log_;
    MemoryEnvironment environment_;
    MemoryFileSystem files_;
    std::int32_t isGraphical_ = 0;
    PredefinedVariables predefined_{isGraphical_, environment_, files_, log_.console()};
    VariableStore store_{predefined_, environment_, log_.console()};
    Expressions expressions_{store_, log_.console()};
};
