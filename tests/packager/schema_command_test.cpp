#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packager/commands.h"
#include "packager/commands_fixture.h"

namespace {

using SchemaCommandTest = CommandsTest;

TEST_F(SchemaCommandTest, PrintsAWholeSchema) {
    EXPECT_EQ(run({"schema"}), 0);
    ASSERT_FALSE(output_.lines.empty());
    EXPECT_EQ(output_.lines.front(), R"(<?xml version="1.0" encoding="UTF-8"?>)");
    EXPECT_EQ(output_.lines.back(), "</xs:schema>");
    EXPECT_TRUE(output_.errors.empty());
}

TEST_F(SchemaCommandTest, TakesNoOperand) {
    EXPECT_EQ(run({"schema", "install.xsd"}), 2);
    EXPECT_EQ(output_.errors.front(), "packager: unexpected word \"install.xsd\"");
}

}  // namespace
