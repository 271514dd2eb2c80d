#pragma once

#include <gtest/gtest.h>

#include <string>

#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "fakes/fake_console.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "support/debug_log.h"

// A document with variables and conditions, as the classes that read a description see it.
class DescriptionTest : public testing::Test {
protected:
    void parse(const std::string& text) { document_.parseText(text); }

    std::string valueOf(std::string_view name) { return variables_.get(name).value_or("(none)"); }
    std::string defaultOf(std::string_view name) {
        const auto reading = variables_.readDefault(name, VariableLookup::kTextLimit);
        return reading ? reading->value : "(none)";
    }

    MemoryEnvironment environment_;
    MemoryFileSystem files_;
    FakeConsole log_;
    DebugLog console_{log_};
    std::int32_t isGraphical_ = 0;
    PXML document_;
    PredefinedVariables predefined_{isGraphical_, environment_, files_, console_};
    VariableStore variables_{predefined_, environment_, console_};
    Expressions expressions_{variables_, console_};
};
