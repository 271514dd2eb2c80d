#include "text/list_stack.h"

#include <gtest/gtest.h>

namespace {

std::string marker(ListStack& lists, char bullet = '-') {
    std::string out;
    lists.appendNextMarker(out, bullet);
    return out;
}

TEST(ListStack, BulletsAreTheGivenCharacter) {
    ListStack lists;
    lists.open(kTgmBulletList);
    EXPECT_EQ(marker(lists), "- ");
    EXPECT_EQ(marker(lists, '*'), "* ");
    EXPECT_EQ(lists.markerWidth(), 2U);
}

TEST(ListStack, NumbersCountFromOne) {
    ListStack lists;
    lists.open(kTgmNumberList);
    EXPECT_EQ(lists.markerWidth(), 3U);
    for (int i = 1; i <= 120; ++i) {
        EXPECT_EQ(marker(lists), std::to_string(i) + ". ");
    }
}

TEST(ListStack, TheWidthOfANumberIsThatOfTheNextItem) {
    ListStack lists;
    lists.open(kTgmNumberList);
    for (int i = 1; i <= 8; ++i) {
        marker(lists);
    }
    EXPECT_EQ(lists.markerWidth(), 3U) << "the text of item 8 is indented for \"9. \"";
    marker(lists);
    EXPECT_EQ(lists.markerWidth(), 4U) << "the text of item 9 is indented for \"10. \"";
    for (int i = 10; i <= 99; ++i) {
        marker(lists);
    }
    EXPECT_EQ(lists.markerWidth(), 5U);
}

TEST(ListStack, LettersContinueAsTheNextByteValues) {
    ListStack lists;
    lists.open(kTgmLetterList);
    EXPECT_EQ(lists.markerWidth(), 3U);
    for (int i = 0; i < 600; ++i) {
        const std::string expected = {static_cast<char>(static_cast<unsigned char>('a' + i)), '.', ' '};
        EXPECT_EQ(marker(lists), expected) << i;
    }
    EXPECT_EQ(lists.markerWidth(), 3U);
}

TEST(ListStack, TheItemAfterZIsABrace) {
    ListStack lists;
    lists.open(kTgmLetterList);
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        EXPECT_EQ(marker(lists), std::string(1, letter) + ". ");
    }
    EXPECT_EQ(marker(lists), "{. ");
}

TEST(ListStack, TheInnermostListCounts) {
    ListStack lists;
    lists.open(kTgmNumberList);
    EXPECT_EQ(marker(lists), "1. ");
    lists.open(kTgmLetterList);
    EXPECT_EQ(lists.depth(), 2U);
    EXPECT_EQ(marker(lists), "a. ");
    lists.close();
    EXPECT_EQ(lists.depth(), 1U);
    EXPECT_EQ(marker(lists), "2. ");
    lists.open(kTgmLetterList);
    EXPECT_EQ(marker(lists), "a. ") << "a new list counts from the start";
}

TEST(ListStack, HasNoMarkerWithoutAList) {
    ListStack lists;
    lists.close();
    EXPECT_EQ(lists.depth(), 0U);
    EXPECT_EQ(lists.markerWidth(), 0U);
    EXPECT_EQ(marker(lists), "");
}

}  // namespace
