#include "ui/triggers.h"

#include "walk_fixture.h"

namespace {

class TriggersTest : public Walk {
protected:
    DialogDesc& page = addDialog("Page");

    void fire(std::uint32_t when = kTriggerOnStart) { walk.runTriggers(&ui, when, 0, -1); }
};

TEST_F(TriggersTest, ChangesAVariableToTheExpandedValue) {
    variables.set("A", "value");
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "B", "<[A]>");
    fire();
    EXPECT_EQ(valueOf("B"), "<value>");
}

TEST_F(TriggersTest, SetsTheEnvironmentThroughADollarName) {
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "$NAME", "text");
    fire();
    EXPECT_EQ(environment.variables["NAME"], "text");
    EXPECT_EQ(variables.find("$NAME"), std::nullopt);
}

TEST_F(TriggersTest, RunsAnActionSection) {
    addTrigger(page, kTriggerOnStart, kTriggerRunActions, "", "Section");
    fire();
    EXPECT_EQ(actions.calls, Calls{"runActions(Section)"});
}

TEST_F(TriggersTest, ResetsAVariableToItsExpressionAndFollowsItAgain) {
    variables.set("A", "1");
    variables.store("B", {"changed", "<$A>", "default"}, false);
    addTrigger(page, kTriggerOnStart, kTriggerVarReset, "B", "");
    fire();
    EXPECT_EQ(valueOf("B"), "<1>");
    variables.set("A", "2");
    EXPECT_EQ(valueOf("B"), "<2>");
}

TEST_F(TriggersTest, WarnsAboutTheResetOfAMissingVariable) {
    addTrigger(page, kTriggerOnStart, kTriggerVarReset, "MISSING", "");
    fire();
    EXPECT_TRUE(log.hasLine("WARNING: Trying to reset non-existent variable: MISSING"));
    debugLog.setTarget(nullptr, 0);
    fire();
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(TriggersTest, RecalculatesTheVariablesThatFollowAnother) {
    variables.set("A", "1");
    variables.store("B", {"old", "<$A>", ""}, true);
    addTrigger(page, kTriggerOnStart, kTriggerVarRecalculation, "A", "");
    EXPECT_EQ(valueOf("B"), "old");
    fire();
    EXPECT_EQ(valueOf("B"), "<1>");
}

TEST_F(TriggersTest, LeavesTheNamedVariableAloneInARecalculation) {
    variables.set("A", "1");
    variables.store("B", {"old", "<$A>", ""}, true);
    addTrigger(page, kTriggerOnStart, kTriggerVarRecalculation, "B", "");
    fire();
    EXPECT_EQ(valueOf("B"), "old");
}

TEST_F(TriggersTest, TakesThePathOfAFileThatExists) {
    files.addFile("C:\\apps\\demo.exe", "");
    variables.set("DIR", "C:/apps");
    addTrigger(page, kTriggerOnStart, kTriggerFileCheck, "FOUND", " [DIR]//demo.exe ");
    fire();
    EXPECT_EQ(valueOf("FOUND"), "C:\\apps\\demo.exe");
}

TEST_F(TriggersTest, RestoresTheDefaultForAFileThatDoesNotExist) {
    variables.store("FOUND", {"old", {}, "0"}, false);
    addTrigger(page, kTriggerOnStart, kTriggerFileCheck, "FOUND", "C:/missing");
    fire();
    EXPECT_EQ(valueOf("FOUND"), "0");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(TriggersTest, WarnsAboutAFileCheckOfAMissingVariable) {
    addTrigger(page, kTriggerOnStart, kTriggerFileCheck, "MISSING", "C:/missing");
    fire();
    EXPECT_TRUE(log.hasLine("WARNING: Trying to reset non-existent variable: MISSING"));
}

TEST_F(TriggersTest, PrintsAnExpressionIntoTheDebugLog) {
    variables.set("A", "value");
    addTrigger(page, kTriggerOnStart, kTriggerDebugExpression, "", "A is [A]");
    fire();
    EXPECT_EQ(log.lines(), Calls{"DEBUG: Dlg (0, -1) trigger expanded value: A is value"});
    debugLog.setTarget(nullptr, 0);
    fire();
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(TriggersTest, WarnsAboutAnEmptyExpression) {
    addTrigger(page, kTriggerOnStart, kTriggerDebugExpression, "", "");
    fire();
    EXPECT_EQ(log.lines(), Calls{"WARNING: Empty debug trigger in dialog (0, -1)"});
}

TEST_F(TriggersTest, WarnsAboutAnUnknownType) {
    addTrigger(page, kTriggerOnStart, 6, "A", "1");
    addTrigger(page, kTriggerOnStart, -1, "A", "1");
    fire();
    EXPECT_EQ(log.lines(),
              (Calls{"WARNING: Unrecognized trigger type (6)", "WARNING: Unrecognized trigger type (-1)"}));
}

TEST_F(TriggersTest, HasAnEffectForEachTypeOfTheDescription) {
    for (std::int32_t type = kTriggerVarChange; type <= kTriggerDebugExpression; ++type) {
        addTrigger(page, kTriggerOnStart, type, "A", "x");
    }
    variables.set("A", "1");
    fire();
    for (const std::string& line : log.lines()) {
        EXPECT_EQ(line.find("Unrecognized"), std::string::npos) << line;
    }
}

TEST_F(TriggersTest, FiresAtItsMomentsOnly) {
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

TEST_F(TriggersTest, SeesWhatEarlierOnesSet) {
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "A", "1");
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "B", "[A]").condition.assign("[A]==1");
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "C", "[B]").condition.assign("[A]==2");
    fire();
    EXPECT_EQ(valueOf("B"), "1");
    EXPECT_EQ(valueOf("C"), "(none)");
}

TEST_F(TriggersTest, FiresWhenItsConditionIsBroken) {
    addTrigger(page, kTriggerOnStart, kTriggerVarChange, "A", "1").condition.assign("broken");
    fire();
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(TriggersTest, BelongsToItsPage) {
    DialogDesc& frame = addFrame("Frame", {"Sub"});
    addTrigger(frame, kTriggerOnStart, kTriggerRunActions, "", "frame");
    addTrigger(frame.subDialogs[0], kTriggerOnStart, kTriggerRunActions, "", "sub");
    walk.runTriggers(&ui, kTriggerOnStart, 1, 0);
    EXPECT_EQ(actions.take(), Calls{"runActions(sub)"});
    walk.runTriggers(&ui, kTriggerOnStart, 1, 1);
    walk.runTriggers(&ui, kTriggerOnStart, 2, -1);
    walk.runTriggers(&ui, kTriggerOnStart, -1, -1);
    EXPECT_TRUE(actions.calls.empty());
}

}  // namespace
