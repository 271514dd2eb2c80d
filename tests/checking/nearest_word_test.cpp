#include "checking/nearest_word.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::vector<std::string_view> kWords = {"Dialogs", "DefValues", "Value", "FN", "Finish"};

TEST(NearestWord, FindsWhatWasMisspelt) {
    EXPECT_EQ(nearestWord("Dialog", kWords), "Dialogs");       // missing
    EXPECT_EQ(nearestWord("Dialloogs", kWords), "Dialogs");    // too many
    EXPECT_EQ(nearestWord("Diologs", kWords), "Dialogs");      // wrong
    EXPECT_EQ(nearestWord("Dailogs", kWords), "Dialogs");      // swapped
    EXPECT_EQ(nearestWord("defvalues", kWords), "DefValues");  // case
}

TEST(NearestWord, LetsOneInThreeLettersDiffer) {
    EXPECT_EQ(nearestWord("Fi", kWords), "FN");
    EXPECT_EQ(nearestWord("Vaxye", kWords), "");
    EXPECT_EQ(nearestWord("Vaxue", kWords), "Value");
    EXPECT_EQ(nearestWord("Fxxish", kWords), "Finish");
    EXPECT_EQ(nearestWord("Fxxxsh", kWords), "");
}

TEST(NearestWord, PrefersTheNearestAndOfTwoTheFirst) {
    EXPECT_EQ(nearestWord("abcd", {"abxy", "abcx"}), "abcx");
    EXPECT_EQ(nearestWord("abcd", {"abce", "abcf"}), "abce");
}

TEST(NearestWord, FindsNothingForWhatIsNoWord) {
    EXPECT_EQ(nearestWord("", kWords), "");
    EXPECT_EQ(nearestWord("Dialogs", {}), "");
    const std::string longest(64, 'a');
    const std::string tooLong(65, 'a');
    EXPECT_EQ(nearestWord(longest, {longest}), longest);
    EXPECT_EQ(nearestWord(tooLong, {tooLong}), "");
    EXPECT_EQ(nearestWord(longest, {tooLong}), "");
}

}  // namespace
