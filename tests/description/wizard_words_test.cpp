#include "description/wizard_words.h"

#include <gtest/gtest.h>

#include <set>

#include "description/pxml.h"

namespace {

class WizardWordsTest : public testing::Test {
protected:
    void describe(const std::string& words) {
        description_.parseText("<TandrelGroupInstallation><Words>" + words +
                               "</Words></TandrelGroupInstallation>");
    }

    PXML description_;
    WizardWords words_{description_};
};

TEST_F(WizardWordsTest, AreTheDefaultOnesWithoutADescription) {
    EXPECT_EQ(WizardWords().text("PressEnter"), "Press Enter to continue...");
    EXPECT_EQ(defaultWords().text("AskChoice", {"Go", "yes", "no"}), "Go (yes or no)");
    EXPECT_EQ(words_.text("ButtonNext"), "&Next");
    describe("");
    EXPECT_EQ(words_.text("ButtonNext"), "&Next");
}

TEST_F(WizardWordsTest, AreThoseOfTheDescriptionWhereItHasThem) {
    describe("<Word Name=\"ButtonNext\">&amp;Weiter</Word><Word Name=\"AnswerNo\">nein</Word>");
    EXPECT_EQ(words_.text("ButtonNext"), "&Weiter");
    EXPECT_EQ(words_.text("AnswerNo"), "nein");
    EXPECT_EQ(words_.text("AnswerYes"), "yes");
}

TEST_F(WizardWordsTest, TakeTheFirstTextThatIsNotEmpty) {
    describe(
        "<Word Name=\"AnswerNo\"></Word><Other Name=\"AnswerNo\">x</Other><Word>y</Word>"
        "<Word Name=\"AnswerNo\">a</Word><Word Name=\"AnswerNo\">b</Word>");
    EXPECT_EQ(words_.text("AnswerNo"), "a");
}

TEST_F(WizardWordsTest, PutValuesIntoTheirPlaces) {
    describe("<Word Name=\"AskChoice\">%3/%2: %1</Word>");
    EXPECT_EQ(words_.text("AskChoice", {"q %2", "a", "b"}), "b/a: q %2");
}

TEST(FillPlaces, LeavesWhatIsNoPlaceOfAValue) {
    EXPECT_EQ(fillPlaces("100% of %1, %2, %0 and %", {"a"}), "100% of a, %2, %0 and %");
    EXPECT_EQ(fillPlaces("", {"a"}), "");
}

TEST(WizardWordTable, HasEachNameOnceAndATextForIt) {
    std::set<std::string_view> names;
    for (const WizardWord& word : kWizardWords) {
        EXPECT_TRUE(names.insert(word.name).second) << word.name;
        EXPECT_FALSE(word.text.empty()) << word.name;
    }
}

}  // namespace
