#include "ui/field_values.h"

#include <gtest/gtest.h>

#include "fakes/fake_engine.h"

namespace {

TEST(FieldValuesTest, TrimsAllWhiteSpaceOfTheCLocale) {
    EXPECT_EQ(trimmedAnswer(" \t\n\v\f\ra b \r\n"), "a b");
    EXPECT_EQ(trimmedAnswer(" \t "), "");
    EXPECT_EQ(trimmedAnswer(""), "");
}

TEST(FieldValuesTest, CleansDirectories) {
    EXPECT_EQ(cleanDirectory("  C:/Program Files//Product/ "), "C:\\Program Files\\Product");
    EXPECT_EQ(cleanDirectory("/opt/product"), "\\opt\\product");
    EXPECT_EQ(cleanDirectory(" \t"), "");
    EXPECT_EQ(cleanDirectory("a \\"), "a");
}

TEST(FieldValuesTest, KeepsTheStartOfANetworkPath) {
    EXPECT_EQ(cleanDirectory("\\\\server\\\\share\\"), "\\\\server\\share");
    EXPECT_EQ(cleanDirectory("////server/share"), "\\\\server\\share");
}

TEST(FieldValuesTest, CutsAValueToTheCapacity) {
    FakeEngine engine;
    engine.variables["V"] = "abcdef";
    EXPECT_EQ(valueOfVariable("V", engine, 4), "abc");
    EXPECT_EQ(valueOfVariable("V", engine, 16), "abcdef");
    EXPECT_EQ(valueOfVariable("Missing", engine, 16), "");
}

TEST(FieldValuesTest, ItemsWithoutAConditionAreEnabled) {
    FakeEngine engine;
    engine.conditions["no"] = 0;
    EXPECT_EQ(enabledItems("yes|no", 3, engine), (std::vector<bool>{true, false, true}));
    EXPECT_EQ(enabledItems("", 2, engine), (std::vector<bool>{true, true}));
    EXPECT_EQ(enabledItems("no|no|no", 1, engine), (std::vector<bool>{false}));
}

}  // namespace
