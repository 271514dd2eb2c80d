#include "platform/variable_rules.h"

#include <gtest/gtest.h>

#include "platform/environment.h"

namespace {

TEST(VariableRulesTest, AreThoseOfTheSystemsEnvironment) {
    const platform::VariableRules rules = platform::systemVariableRules();
    platform::Environment& environment = platform::systemEnvironment();
    ASSERT_TRUE(environment.set("TandrelVariableRules", "value"));
    EXPECT_EQ(environment.get("TANDRELVARIABLERULES").has_value(), rules.ignoresCase);
    ASSERT_TRUE(environment.set("TandrelVariableRules", ""));
    EXPECT_EQ(environment.get("TandrelVariableRules").has_value(), !rules.emptyRemoves);
}

}  // namespace
