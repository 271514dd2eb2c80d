#include "checking/condition_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> codesOf(std::string_view condition, std::vector<std::string> values = {}) {
    std::vector<std::string> codes;
    for (const ConditionFault& fault : analyseCondition(condition, [&](std::string_view variable) {
             return variable == "X" ? values : std::vector<std::string>();
         })) {
        codes.emplace_back(fault.code.name());
    }
    return codes;
}

TEST(ConditionAnalysis, FindsNothingInRightConditions) {
    for (const char* condition :
         {"", "[A]==1", "'[A]'=='text'", "[A]==1,[B]!=0;[C]>2", "([A]==1;[B]==1),[C]==1", "[A]", "0", "1==0",
          "1==1", "'[A]'!=''", "[A]==0x1F", "[A]<10,[A]>5", "'[A]'=='it, or; that'",
          "'[A] and [B]'=='1 and 2'"}) {
        EXPECT_THAT(codesOf(condition), IsEmpty()) << condition;
    }
}

TEST(ConditionAnalysis, SaysWhyAConditionCannotBeRead) {
    EXPECT_THAT(codesOf("[A]=1"), ElementsAre("condition-assignment"));
    EXPECT_THAT(codesOf("[A]==yes"), ElementsAre("condition-bare-word"));
    EXPECT_THAT(codesOf("yes==[A]"), ElementsAre("condition-bare-word"));
    EXPECT_THAT(codesOf("!([A]==1)"), ElementsAre("condition-operator"));
    EXPECT_THAT(codesOf("not [A]==1"), ElementsAre("condition-operator"));
    EXPECT_THAT(codesOf("[A]=="), ElementsAre("condition-broken"));
    EXPECT_THAT(codesOf(",[A]==1"), ElementsAre("condition-broken"));
    EXPECT_THAT(codesOf("'[A]'=='open"), ElementsAre("condition-broken"));
}

TEST(ConditionAnalysis, FindsWhatIsIgnored) {
    EXPECT_THAT(codesOf("[A]==1 && [B]==1"), ElementsAre("condition-operator"));
    EXPECT_THAT(codesOf("[A]==1 and [B]==1"), ElementsAre("condition-operator"));
    EXPECT_THAT(codesOf("[A]==1 [B]==1"), ElementsAre("condition-ignored-end"));
    EXPECT_THAT(codesOf("[A]==1)"), ElementsAre("condition-ignored-end"));
    EXPECT_THAT(codesOf("([A]==1"), ElementsAre("condition-parenthesis"));
}

TEST(ConditionAnalysis, FindsWhatHoldsOrFailsWhateverTheVariablesAre) {
    EXPECT_THAT(codesOf("'[A]'"), ElementsAre("condition-always-true"));
    EXPECT_THAT(codesOf("'a'=='a'"), ElementsAre("condition-always-true"));
    EXPECT_THAT(codesOf("'[A]'!=1"), ElementsAre("condition-always-true")) << "a text is no number";
    EXPECT_THAT(codesOf("[A]==1;[A]!=1"), ElementsAre("condition-always-true"));
    EXPECT_THAT(codesOf("'[A]'==1"), ElementsAre("condition-always-false"));
    EXPECT_THAT(codesOf("[A]==1,[A]==2"), ElementsAre("condition-always-false"));
}

TEST(ConditionAnalysis, FindsInitialValuesThatBreakACondition) {
    EXPECT_THAT(codesOf("[X]==1", {"0"}), IsEmpty());
    EXPECT_THAT(codesOf("'[X]'=='none'", {"none"}), IsEmpty());
    EXPECT_THAT(codesOf("[X]==1", {"none"}), ElementsAre("condition-initial-value"));
    EXPECT_THAT(codesOf("[A]==1,[X]==1", {"0", ""}), ElementsAre("condition-initial-value"));
    EXPECT_THAT(codesOf("[x]==1", {"none"}), IsEmpty()) << "the caller knows how names compare";
}

TEST(ConditionAnalysis, TakesManyVariablesForOnesThatVary) {
    std::string condition = "[V0]==0";
    for (int i = 1; i < 40; ++i) {
        condition += ",[V" + std::to_string(i) + "]==" + std::to_string(i);
    }
    EXPECT_EQ(constancyOf(condition), Constancy::kVaries);
    EXPECT_THAT(codesOf(condition), IsEmpty());
}

TEST(ConditionAnalysis, TellsConstantConditions) {
    EXPECT_EQ(constancyOf("1==0"), Constancy::kAlwaysFalse);
    EXPECT_EQ(constancyOf("[A]==1"), Constancy::kVaries);
    EXPECT_EQ(constancyOf("[A]=1"), Constancy::kAlwaysTrue) << "what can't be read holds";
}

TEST(ConditionAnalysis, SurvivesEveryCutOfACondition) {
    const std::string whole = "([A]==0x1F,'[B]'!='text');[C]>=10,version('[D]')<version('1.2')";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        codesOf(whole.substr(0, length), {"a", ""});
        EXPECT_LE(codesOf(whole.substr(length)).size(), 3U);
    }
}

}  // namespace
