#include "ui/triggers.h"

#include "walk_fixture.h"

namespace {

class TriggersTest : public Walk {
protected:
    DialogDesc& page = addDialog("Page");

    void fire(std::uint32_t when = kTriggerOnStart) { triggers.run(&ui, when, 0, -1); }
};

TEST_F(TriggersTest, ChangeAVariableToTheExpandedValue) {
    variables.setVariable("A", "value");
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "B", "<[A]>");
    fire();
    EXPECT_EQ(valueOf("B"), "<value>");
}

TEST_F(TriggersTest, SetTheEnvironmentThroughADollarName) {
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "$NAME", "text");
    fire();
    EXPECT_EQ(environment.environment["NAME"], "text");
    EXPECT_EQ(variables.findStored("$NAME"), -1);
}

TEST_F(TriggersTest, RunAnActionSection) {
    addTrigger(page, kTriggerOnStart, kTriggerRunActions, "", "Section");
    fire();
    EXPECT_EQ(actions.calls, Calls{"runActions(Section)"});
}

TEST_F(TriggersTest, ResetAVariableToItsExpressionAndFollowItAgain) {
    variables.setVariable("A", "1");
    variables.storeVariable("B", "changed", "<$A>", false, "default");
    addTrigger(page, kTriggerOnStart, kTriggerVarReset, "B", "");
    fire();
    EXPECT_EQ(valueOf("B"), "<1>");
    variables.setVariable("A", "2");
    EXPECT_EQ(valueOf("B"), "<2>");
}

TEST_F(TriggersTest, WarnAboutTheResetOfAMissingVariable) {
    addTrigger(page, kTriggerOnStart, kTriggerVarReset, "MISSING", "");
    fire();
    EXPECT_TRUE(log.hasLine("WARNING: Trying to reset non-existent variable: MISSING"));
    console.setTarget(nullptr, 0);
    fire();
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(TriggersTest, RecalculateTheVariablesThatFollowAnother) {
    variables.setVariable("A", "1");
    variables.storeVariable("B", "old", "<$A>", true, "");
    addTrigger(page, kTriggerOnStart, kTriggerVarRecalculation, "A", "");
    EXPECT_EQ(valueOf("B"), "old");
    fire();
    EXPECT_EQ(valueOf("B"), "<1>");
}

TEST_F(TriggersTest, LeaveTheNamedVariableAloneInARecalculation) {
    variables.setVariable("A", "1");
    variables.storeVariable("B", "old", "<$A>", true, "");
    addTrigger(page, kTriggerOnStart, kTriggerVarRecalculation, "B", "");
    fire();
    EXPECT_EQ(valueOf("B"), "old");
}

TEST_F(TriggersTest, TakeThePathOfAFileThatExists) {
    environment.files = {"C:\\apps\\demo.exe"};
    variables.setVariable("DIR", "C:/apps");
    addTrigger(page, kTriggerOnStart, kTriggerFileCheck, "FOUND", " [DIR]//demo.exe ");
    fire();
    EXPECT_EQ(valueOf("FOUND"), "C:\\apps\\demo.exe");
}

TEST_F(TriggersTest, RestoreTheDefaultForAFileThatDoesNotExist) {
    variables.storeVariable("FOUND", "old", nullptr, false, "0");
    addTrigger(page, kTriggerOnStart, kTriggerFileCheck, "FOUND", "C:/missing");
    fire();
    EXPECT_EQ(valueOf("FOUND"), "0");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(TriggersTest, WarnAboutAFileCheckOfAMissingVariable) {
    addTrigger(page, kTriggerOnStart, kTriggerFileCheck, "MISSING", "C:/missing");
    fire();
    EXPECT_TRUE(log.hasLine("WARNING: Trying to reset non-existent variable: MISSING"));
}

TEST_F(TriggersTest, PrintAnExpressionIntoTheDebugLog) {
    variables.setVariable("A", "value");
    addTrigger(page, kTriggerOnStart, kTriggerDebugExpression, "", "A is [A]");
    fire();
    EXPECT_EQ(log.lines(), Calls{"DEBUG: Dlg (0, -1) trigger expanded value: A is value"});
    console.setTarget(nullptr, 0);
    fire();
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(TriggersTest, WarnAboutAnEmptyExpression) {
    addTrigger(page, kTriggerOnStart, kTriggerDebugExpression, "", "");
    fire();
    EXPECT_EQ(log.lines(), Calls{"WARNING: Empty debug trigger in dialog (0, -1)"});
}

TEST_F(TriggersTest, WarnAboutAnUnknownType) {
    addTrigger(page, kTriggerOnStart, 6, "A", "1");
    addTrigger(page, kTriggerOnStart, -1, "A", "1");
    fire();
    EXPECT_EQ(log.lines(),
              (Calls{"WARNING: Unrecognized trigger type (6)", "WARNING: Unrecognized trigger type (-1)"}));
}

TEST_F(TriggersTest, HaveAnEffectForEachTypeOfTheDescription) {
    for (std::int32_t type = kTriggerVarChange; type <= kTriggerDebugExpression; ++type) {
        addTrigger(page, kTriggerOnStart, type, "A", "x");
    }
    variables.setVariable("A", "1");
    fire();
    for (const std::string& line : log.lines()) {
        EXPECT_EQ(line.find("Unrecognized"), std::string::npos) << line;
    }
}

TEST_F(TriggersTest, FireAtTheirMomentsOnly) {
    addTrigger(page, kTriggerOnStart | kTriggerOnEnd, kTriggerRunActions, "", "start or end");
    addTrigger(page, kTriggerOnDynamic, kTriggerRunActions, "", "dynamic");
    addTrigger(page, kTriggerOnDlgEval, kTriggerRunActions, "", "busy");
    fire(kTriggerOnStart);
    EXPECT_EQ(actions.take(), Calls{"runActions(start or end)"});
    fire(kTriggerOnDynamic);
    EXPECT_EQ(actions.take(), Calls{"runActions(dynamic)"});
    fire(kTriggerOnEnd);
    EXPECT_EQ(actions.take(), Calls{"runActions(start or end)"});
    fire(kTriggerOnDlgEval);
    EXPECT_EQ(actions.take(), Calls{"runActions(busy)"});
}

TEST_F(TriggersTest, SeeWhatEarlierOnesSet) {
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "A", "1");
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "B", "[A]").condition.assign("[A]==1");
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "C", "[B]").condition.assign("[A]==2");
    fire();
    EXPECT_EQ(valueOf("B"), "1");
    EXPECT_EQ(valueOf("C"), "(none)");
}

TEST_F(TriggersTest, FireWhenTheirConditionIsBroken) {
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "A", "1").condition.assign("broken");
    fire();
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(TriggersTest, BelongToTheirPage) {
    DialogDesc& frame = addFrame("Frame", {"Sub"});
    addTrigger(frame, kTriggerOnStart, kTriggerRunActions, "", "frame");
    addTrigger(frame.subDialogs[0], kTriggerOnStart, kTriggerRunActions, "", "sub");
    triggers.run(&ui, kTriggerOnStart, 1, 0);
    EXPECT_EQ(actions.take(), Calls{"runActions(sub)"});
    triggers.run(&ui, kTriggerOnStart, 1, 1);
    triggers.run(&ui, kTriggerOnStart, 2, -1);
    triggers.run(&ui, kTriggerOnStart, -1, -1);
    EXPECT_TRUE(actions.calls.empty());
}

}  // namespace
