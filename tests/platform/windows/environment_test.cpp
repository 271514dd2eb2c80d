#include "platform/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using platform::systemEnvironment;

TEST(WindowsEnvironment, AgreesWithTheCLibrary) {
    ASSERT_TRUE(systemEnvironment().set("TANDREL_TEST_VARIABLE", "value"));
    EXPECT_STREQ(std::getenv("TANDREL_TEST_VARIABLE"), "value");
    EXPECT_EQ(systemEnvironment().get("tandrel_test_variable"), "value");
    ASSERT_TRUE(systemEnvironment().set("TANDREL_TEST_VARIABLE", ""));
    EXPECT_EQ(std::getenv("TANDREL_TEST_VARIABLE"), nullptr);
    EXPECT_EQ(systemEnvironment().get("TANDREL_TEST_VARIABLE"), std::nullopt);
}

TEST(WindowsEnvironment, RemovesWhatIsNotThere) {
    EXPECT_TRUE(systemEnvironment().set("TANDREL_TEST_NOTHING", ""));
}

TEST(WindowsEnvironment, HoldsLongValuesAndRefusesLongerOnes) {
    const std::string longValue(32000, 'x');
    ASSERT_TRUE(systemEnvironment().set("TANDREL_TEST_LONG", longValue.c_str()));
    EXPECT_EQ(systemEnvironment().get("TANDREL_TEST_LONG"), longValue);
    const std::string tooLong(40000, 'y');
    EXPECT_FALSE(systemEnvironment().set("TANDREL_TEST_LONG", tooLong.c_str()));
    EXPECT_EQ(systemEnvironment().get("TANDREL_TEST_LONG"), longValue);
    EXPECT_TRUE(systemEnvironment().set("TANDREL_TEST_LONG", ""));
}

}  // namespace
