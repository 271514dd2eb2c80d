#include "checking/wizard_word_check.h"

#include "checking/check_bench.h"

namespace {

class WizardWordCheckTest : public testing::Test {
protected:
    CheckBench bench_{[](const CheckedParts& parts) { checkWizardWords(parts.context); }};
};

TEST_F(WizardWordCheckTest, IsContentWithThePlacesOfTheWordInAnyOrder) {
    EXPECT_EQ(bench_.find("<Words><Word Name='AskChoice'>%3 o %2: %1 %2</Word>"
                          "<Word Name='AnswerYes'>100% s\xC3\xAD</Word></Words>"),
              Found());
}

TEST_F(WizardWordCheckTest, FindsPlacesThatDiffer) {
    EXPECT_EQ(bench_.messages("<Words><Word Name='AskNumber'>which?</Word>"
                              "<Word Name='AnswerYes'>%1</Word>"
                              "<Word Name='AskNumberWithDefault'>%1 %3</Word></Words>"),
              (Found{"the places of values in \"AskNumber\" are %1, here none",
                     "the places of values in \"AnswerYes\" are none, here %1",
                     "the places of values in \"AskNumberWithDefault\" are %1, %2, here %1, %3"}));
    EXPECT_EQ(bench_.find("<Words><Word Name='AskNumber'>x</Word></Words>"), (Found{"word-places 2:31"}));
}

TEST_F(WizardWordCheckTest, FindsAWordThatHasATextAlready) {
    EXPECT_EQ(bench_.find("<Words><Word Name='AnswerYes'>a</Word>\n<Word Name='AnswerYes'>b</Word></Words>"),
              (Found{"word-repeated 3:1"}));
}

TEST_F(WizardWordCheckTest, LeavesUnknownWordsToTheCheckOfNames) {
    EXPECT_EQ(bench_.find("<Words><Word Name='Nothing'>%1</Word><Word>%1</Word></Words>"), Found());
}

}  // namespace
