#include "ui/name_search.h"

#include <gtest/gtest.h>

TEST(NameSearch, FindsNoNameWhenThereIsNone) {
    EXPECT_FALSE(NameSearch().isAnyIn("text"));
}

TEST(NameSearch, FindsNamesAtAnyPlaceWithCase) {
    NameSearch names;
    names.add("AB");
    names.add("xyz");
    EXPECT_TRUE(names.isAnyIn("AB"));
    EXPECT_TRUE(names.isAnyIn("--AB"));
    EXPECT_TRUE(names.isAnyIn("ABxy"));
    EXPECT_TRUE(names.isAnyIn("--xyz--"));
    EXPECT_FALSE(names.isAnyIn("Ab xy"));
    EXPECT_FALSE(names.isAnyIn("A"));
    EXPECT_FALSE(names.isAnyIn(""));
}

TEST(NameSearch, FindsAnEmptyNameEverywhere) {
    NameSearch names;
    names.add("");
    EXPECT_TRUE(names.isAnyIn("x"));
    EXPECT_TRUE(names.isAnyIn(""));
}
