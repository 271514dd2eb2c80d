#include "description/condition_parser.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// 1 true, 0 false, -1 where the condition can't be evaluated.
int evaluate(const std::string& text) {
    const std::optional<bool> truth = ConditionParser(text).evaluate();
    return truth ? static_cast<int>(*truth) : -1;
}

struct Case {
    const char* text;
    int result;
};

void expectAll(std::initializer_list<Case> cases) {
    for (const Case& one : cases) {
        EXPECT_EQ(evaluate(one.text), one.result) << one.text;
    }
}

TEST(ConditionParser, SingleOperandIsTrueUnlessItIsZero) {
    expectAll({{"0", 0}, {"1", 1}, {"2", 1}, {"''", 1}, {"'a'", 1}, {"00", 0}, {"0x0", 0}});
}

TEST(ConditionParser, AndBindsTighterThanOr) {
    expectAll({{"1==1,2==3;4==4", 1},
               {"1==1,(2==3;4==4)", 1},
               {"0,1;1", 1},
               {"0;0,1", 0},
               {"1;0,0", 1},
               {"1,0", 0},
               {"0;0;1", 1},
               {"1,(0;0)", 0}});
}

TEST(ConditionParser, NumbersCompareByTheirDifference) {
    expectAll({{"1==1", 1},
               {"1!=1", 0},
               {"1<2", 1},
               {"2<=2", 1},
               {"3>2", 1},
               {"2>=3", 0},
               {"2>3", 0},
               {"2147483647>2147483649", 0},
               {"2147483649<1", 1}});
    EXPECT_EQ(evaluate("2147483649>2"), 1) << "the difference wraps over";
}

TEST(ConditionParser, StringsCompareByUnsignedBytes) {
    expectAll({{"'a'<'b'", 1},
               {"'a'=='A'", 0},
               {"'a'=='a'", 1},
               {"'ab'>'a'", 1},
               {"''<'a'", 1},
               {"'\xC3'>'z'", 1},
               {"'a'!='b'", 1}});
}

TEST(ConditionParser, StringAgainstNumberCountsAsItsMarker) {
    expectAll({{"'a'==1", 0}, {"'a'<1", 1}, {"1>'a'", 1}});
}

TEST(ConditionParser, VersionsCompareByTheirParts) {
    expectAll({{"version('1.10.2')>version('1.9')", 1},
               {"version('1.10.2')<=version('1.9')", 0},
               {"version('1.2')==version('1.2.0')", 1},
               {"version('1.2')!=version('1.02')", 0},
               {"version('1.2-beta')<version('1.2')", 1},
               {"version('')==version('0')", 1},
               {"version('2')>=version('10')", 0}});
}

TEST(ConditionParser, VersionsMayStandWhereverAnOperandMay) {
    expectAll({{"version('1')", 1},
               {"version('0')", 1},
               {"VERSION ( '1.10' ) == Version(\t'1.10.0')", 1},
               {"0;(version('1')<version('2'),1)", 1},
               {"version('1')<version('2') junk", 1},
               {"version('a)b')==version('a)b')", 1}});
}

TEST(ConditionParser, ATextBesideAVersionIsReadAsOne) {
    expectAll({{"version('1.10')>'1.9'", 1}, {"'1.10'>'1.9'", 0}, {"'1.2'==version('1.2.0')", 1}});
}

TEST(ConditionParser, ANumberBesideAVersionIsAMistake) {
    expectAll({{"version('1.10')>1", -1},
               {"1<version('1.10')", -1},
               {"version('1')==(1)", -1},
               {"(version('1'))==version('1')", -1}});
}

// No operand begins with a letter, so a version can't change what other conditions mean.
TEST(ConditionParser, AnythingButAVersionOfOneTextIsAMistake) {
    expectAll({{"version", -1},
               {"version==1", -1},
               {"version()", -1},
               {"version(1.10)", -1},
               {"version('1'", -1},
               {"version('1)", -1},
               {"version '1'", -1},
               {"version('1','2')", -1},
               {"versions('1')", -1},
               {"versio('1')", -1},
               {"[version]('1')", -1},
               {"'1'==version", -1}});
}

TEST(ConditionParser, ALongVersionIsAMistakeAndNotCut) {
    const std::string full(1023, '1');
    EXPECT_EQ(evaluate("version('" + full + "')>version('1')"), 1);
    EXPECT_EQ(evaluate("version('" + full + "1')>version('1')"), -1);
}

TEST(ConditionParser, NumbersInEveryBase) {
    expectAll({{"010==8", 1},
               {"09==9", 1},
               {"0x10==16", 1},
               {"0X1f==31", 1},
               {"0xFFFFFFFF==2147483647", 1},
               {"0x7fffffff==2147483647", 1},
               {"0x123456789==0x12345678", 1},
               {"0x==0", 1},
               {"0xg==0", 0},
               {"4294967297==1", 1},
               {"40000000000==1345294336", 1}});
}

TEST(ConditionParser, TwoNumbersCannotBeWritten) {
    EXPECT_EQ(evaluate("4294967295"), -1);
    EXPECT_EQ(evaluate("037777777777"), -1);
    EXPECT_EQ(evaluate("4294967294==''"), 1) << "it reads as a string";
}

TEST(ConditionParser, BrokenTermsFail) {
    expectAll({{"1=1", -1},
               {"1!1", -1},
               {"1==", -1},
               {"==1", -1},
               {"abc==1", -1},
               {"[X]==1", -1},
               {"-1==1", -1},
               {"", -1},
               {" ", -1},
               {"1,", -1},
               {"1;", -1},
               {"()", -1},
               {")", -1}});
}

TEST(ConditionParser, LaterErrorsCountThoughTheResultIsSettled) {
    expectAll({{"1==1;x", -1}, {"0,x", -1}, {"1;(1;x)", -1}, {"(1=1)", -1}});
}

TEST(ConditionParser, ParenthesesNestAndMayStayOpen) {
    expectAll({{"(1==1", 1},
               {"1==1)", 1},
               {"((0);(1,(1)))", 1},
               {"(0)", 0},
               {"(1)==1", 1},
               {"1==(2==2)", 1},
               {"(2)==2", 0},
               {"('a')=='a'", 0},
               {"1,((0;1", 1}});
}

TEST(ConditionParser, WhatFollowsTheConditionIsIgnored) {
    expectAll({{"1==1 junk", 1}, {"0 1", 0}, {"1 'x'", 1}, {"1\n,0", 1}});
}

TEST(ConditionParser, BlanksAndTabsMayStandAnywhereAhead) {
    expectAll({{" \t1 \t== \t1 ", 1}, {"1 ,0", 0}, {"( 1 ) ; 0", 1}, {" 'a' == 'a' , 1", 1}, {"\n1", -1}});
}

TEST(ConditionParser, StringWithoutEndIsClosedByTheText) {
    expectAll({{"'a'=='a", 1}, {"'", 1}});
}

TEST(ConditionParser, StringsEndAtTheirLimitAndLeaveTheRest) {
    const std::string full(1023, 'a');
    EXPECT_EQ(evaluate("'" + full + "'=='" + full + "'"), 1);
    EXPECT_EQ(evaluate("'x'=='x','" + full + "'=='" + full + "b'"), 1) << "what differs was not read";
    EXPECT_EQ(evaluate("'" + full + "b'==1"), 1) << "the rest ends the evaluation, a string is true";
    EXPECT_EQ(evaluate("'" + full + "'==1"), 0) << "a string of exactly the limit is closed";
}

TEST(ConditionParser, HundredThousandParenthesesAreRead) {
    const std::string open(100000, '(');
    const std::string close(100000, ')');
    EXPECT_EQ(evaluate(open + "1" + close), 1);
    EXPECT_EQ(evaluate(open + "0" + close), 0);
    EXPECT_EQ(evaluate(open), -1);
    EXPECT_EQ(evaluate(open + "1"), 1);
}

TEST(ConditionParser, EveryPrefixIsEvaluatedWithoutHarm) {
    const std::string text = "('a'=='b';0x1F>=017),(1!=2;'c'<'d'),version('1.2') < version('1.10-b'),!";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const int result = evaluate(text.substr(0, length));
        EXPECT_GE(result, -1);
        EXPECT_LE(result, 1);
    }
}

}  // namespace
