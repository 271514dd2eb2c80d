#include "checking/condition_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/check_bench.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> shownIn(const std::string& sections) {
    return CheckBench([](const CheckedParts& parts) { checkConditions(parts.context, parts.variables); })
        .find(sections);
}

TEST(ConditionCheck, LooksAtEachKindOfCondition) {
    EXPECT_THAT(shownIn("<FileSet Name='a' Condition='[A]=1'/>"), ElementsAre("condition-assignment 2:30"));
    EXPECT_THAT(shownIn("<DefValues><Value Name='A' DataType='value' UseOld='yes'>1</Value></DefValues>"),
                ElementsAre("condition-bare-word 2:53"));
    EXPECT_THAT(shownIn("<Dialogs><P><Button x='1' y='1' EnableCondition='[A]=1'>n</Button></P></Dialogs>"),
                ElementsAre("condition-assignment 2:50"));
    EXPECT_THAT(shownIn("<FileSet Name='a' Desc='[A]=1'/>"), IsEmpty()) << "no condition";
}

TEST(ConditionCheck, TakesTheConditionsOfChoicesApart) {
    EXPECT_THAT(
        shownIn("<Dialogs><P><Field Type='RadioButtons' Enable='|[A]==1|[B]=2'>C</Field></P></Dialogs>"),
        ElementsAre("condition-assignment 2:48"));
}

TEST(ConditionCheck, KnowsTheValuesOfVariables) {
    const std::string values =
        "<DefValues><Value Name='A' DataType='value'>none</Value><Value Name='B' "
        "DataType='value'>0</Value></DefValues>\n";
    EXPECT_THAT(shownIn(values + "<FileSet Name='a' Condition='[B]==1'/>"), IsEmpty());
    EXPECT_THAT(shownIn(values + "<FileSet Name='a' Condition='[a]==1'/>"),
                ElementsAre("condition-initial-value 3:30"));
    EXPECT_THAT(shownIn(values + "<Dialogs><P><Field Type='EditBox'>B</Field></P></Dialogs>\n"
                                 "<FileSet Name='a' Condition='[B]==1'/>"),
                ElementsAre("condition-initial-value 4:30"))
        << "somebody may type a word";
}

TEST(ConditionCheck, FindsConditionsThatAreTooLong) {
    const std::string part = "[A]==1;";
    std::string condition;
    while (condition.size() <= 2047) {
        condition += part;
    }
    EXPECT_THAT(shownIn("<FileSet Name='a' Condition='" + condition + "[A]==2'/>"),
                ElementsAre("text-too-long 2:30"));
}

TEST(ConditionCheck, TellsEachPlaceOfOneMistake) {
    EXPECT_THAT(shownIn("<FileSet Name='a' Condition='[A]=1'/>\n<FileSet Name='b' Condition='[A]=1'/>"),
                ElementsAre("condition-assignment 2:30", "condition-assignment 3:30"));
}

}  // namespace
