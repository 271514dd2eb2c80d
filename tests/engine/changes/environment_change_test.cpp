#include "engine/changes/environment_change.h"

#include <gmock/gmock.h>

#include "engine/action_log_format.h"
#include "engine/changes/change_fixture.h"
#include "engine/changes/former_state.h"
#include "engine/changes/same_path.h"
#include "fakes/shown_calls.h"
#include "fakes/temporary_directory.h"
#include "platform/error_text.h"
#include "platform/system_environment.h"

namespace {

using testing::ElementsAre;
using Mode = EnvironmentChange::Mode;

constexpr auto kMachine = platform::RegistryRoot::kLocalMachine;
constexpr auto kNative = platform::RegistryView::kNative;
constexpr const char* kKey = platform::kSystemEnvironmentKey;
constexpr Mode kReplace = Mode::kReplace;
constexpr Mode kAppend = Mode::kAppend;
constexpr Mode kInsert = Mode::kInsert;
constexpr Mode kModes[] = {kReplace, kAppend, kInsert};

class EnvironmentChangeTest : public ChangeTest {
protected:
    void set(std::string_view name, std::string_view value) {
        machine_.registry.addText(kMachine, kKey, name, value);
    }
    void setExpandable(std::string_view name, std::string_view value) {
        set(name, value);
        machine_.registry.writeValue(kMachine, kKey, kNative, name,
                                     {platform::kRegExpandString, std::string(value)});
    }
    // 0 when the variable is absent.
    std::uint32_t typeOf(std::string_view name) {
        const platform::RegistryValue* value = machine_.registry.value(kMachine, kKey, name);
        return value == nullptr ? 0 : value->type;
    }
    bool undo(const std::string& fields) { return change_.undo({"ENV", fields}); }
    // "(none)" when the variable is absent.
    std::string get(std::string_view name) {
        const platform::RegistryValue* value = machine_.registry.value(kMachine, kKey, name);
        return value == nullptr ? "(none)" : value->data;
    }
    bool add(std::string_view name, std::optional<std::string_view> value, Mode mode, bool isPath = false) {
        RecordedResult result = EnvironmentChange::add(bundle_, report_, {name, value, mode, isPath});
        undo_ = result.undo;
        return result.done;
    }
    bool remove(std::string_view undo) { return EnvironmentChange::remove(bundle_, report_, undo); }
    // Nothing is written, there is nothing to undo, and the failure is reported.
    void expectRefused(std::string_view name, std::optional<std::string_view> value, Mode mode,
                       const std::string& line) {
        const std::string present = get(name);
        const std::size_t writes = machine_.registry.operations.size();
        EXPECT_FALSE(add(name, value, mode));
        EXPECT_EQ(undo_, "");
        EXPECT_EQ(get(name), present);
        EXPECT_EQ(machine_.registry.operations.size(), writes);
        EXPECT_EQ(errors_, ErrorList{line});
        expectLines(mode == kInsert ? std::vector<std::string>{} : std::vector<std::string>{line});
        errors_.clear();
    }

    const platform::Platform bundle_ = machine_.bundle();
    EnvironmentChange change_{context_};
    std::string undo_;
};

class EnvironmentElementsTest : public EnvironmentChangeTest {
protected:
    bool apply(const std::string& groups) {
        describe(groups);
        return change_.apply();
    }
};

TEST_F(EnvironmentElementsTest, DoesNothingWithoutAGroup) {
    EXPECT_TRUE(apply("<Installation/>"));
    EXPECT_TRUE(machine_.registry.operations.empty());
    EXPECT_EQ(machine_.shell.broadcasts, 0);
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(EnvironmentElementsTest, MakesEachKindAndRecordsIt) {
    machine_.files.addDirectory("/opt/demo");
    variables_.set("DIR", "C:\\apps");
    set("B", "/opt/demo");
    set("C", "old");
    EXPECT_TRUE(
        apply("<Environment><Replace VarName='A'>[DIR]</Replace>"
              "<Append VarName='B' IsPath='0'>/OPT/demo</Append><Append VarName='B'>/opt/demo</Append>"
              "<Insert VarName='C'>c</Insert></Environment>"));
    EXPECT_EQ(get("A"), "C:\\apps");
    EXPECT_EQ(get("B"), "/opt/demo;/opt/demo");
    EXPECT_EQ(get("C"), "c;old");
    EXPECT_EQ(machine_.shell.broadcasts, 1);
    EXPECT_EQ(records(), "ENV\tCREATE\tA\r\nENV\tNONE\r\nBEFORE\t" + FormerState::ofBytes("/opt/demo") +
                             "\r\nENV\tADD\tB\t/opt/demo\r\nENV\tADD\tC\tc;\r\n");
    EXPECT_THAT(shownCalls(ui_), ElementsAre("addFileLine(\"Create A\", 0)", "addFileLine(\"Add to B\", 0)",
                                             "addFileLine(null, 1)"));
}

TEST_F(EnvironmentElementsTest, PassesOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_TRUE(
        apply("<Environment><Replace>x</Replace><Replace VarName='A'></Replace><Append VarName='A'/>"
              "<Insert VarName='A'> </Insert><Drop VarName='A'>x</Drop>"
              "<Replace VarName='A' Condition='1==2'>x</Replace></Environment>"
              "<Environment Condition='1==2'><Replace VarName='A'>x</Replace></Environment>"));
    EXPECT_TRUE(machine_.registry.operations.empty());
    EXPECT_EQ(machine_.shell.broadcasts, 0);
    EXPECT_EQ(records(), "");
}

TEST_F(EnvironmentElementsTest, EndsAGroupWithItsFailureAndGoesOnWithTheNext) {
    set("A", "not\trecordable");
    EXPECT_FALSE(
        apply("<Environment><Replace VarName='A'>x</Replace><Replace VarName='B'>y</Replace></Environment>"
              "<Environment><Replace VarName='C'>z</Replace></Environment>"));
    EXPECT_EQ(get("A"), "not\trecordable");
    EXPECT_EQ(get("B"), "(none)");
    EXPECT_EQ(get("C"), "z");
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Updating ENV: A=\"x\""));
    EXPECT_EQ(records(), "ENV\tCREATE\tC\r\n");
    EXPECT_EQ(machine_.shell.broadcasts, 0);
}

TEST_F(EnvironmentElementsTest, BroadcastsForAPathThatWasThereAlready) {
    machine_.files.addDirectory("/opt/demo");
    set("PATH", "/opt/demo");
    EXPECT_TRUE(apply("<Environment><Append VarName='PATH' IsPath='1'>/opt/demo</Append></Environment>"));
    EXPECT_EQ(records(), "ENV\tNONE\r\n");
    EXPECT_EQ(machine_.shell.broadcasts, 1);
}

TEST_F(EnvironmentElementsTest, FailsWhenTheNewEnvironmentCouldNotBeMadeKnown) {
    machine_.shell.broadcastWorks = false;
    EXPECT_FALSE(apply("<Environment><Replace VarName='A'>x</Replace></Environment>"));
    EXPECT_EQ(get("A"), "x");
    EXPECT_EQ(records(), "ENV\tCREATE\tA\r\n");
    EXPECT_EQ(errors_, ErrorList{"FAILED to make the changed environment known"});
    EXPECT_TRUE(undo("CREATE\tA"));
    EXPECT_FALSE(change_.finishUndo());
}

TEST_F(EnvironmentElementsTest, NeedsNoFrontEnd) {
    Report report(nullptr, nullptr);
    EnvironmentChange change({bundle_, system_, tags_, writer_, report, console_});
    describe("<Environment><Replace VarName='A'>x</Replace></Environment>");
    EXPECT_TRUE(change.apply());
    EXPECT_EQ(get("A"), "x");
}

TEST_F(EnvironmentElementsTest, TakesItsRecordsBackAndBroadcastsOnceAtTheEnd) {
    set("OLD", "former");
    EXPECT_TRUE(
        apply("<Environment><Replace VarName='OLD'>x</Replace><Replace VarName='NEW'>y</Replace>"
              "</Environment>"));
    ui_.take();
    EXPECT_TRUE(change_.undo({"ENV", "REPLACE\tOLD\tformer"}));
    EXPECT_TRUE(change_.undo({"ENV", "CREATE\tNEW"}));
    EXPECT_EQ(get("OLD"), "former");
    EXPECT_EQ(get("NEW"), "(none)");
    EXPECT_EQ(machine_.shell.broadcasts, 1);
    expectLines({"Restore OLD", "Remove NEW"});
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(machine_.shell.broadcasts, 2);
    EXPECT_THAT(ui_.calls, ElementsAre("setStatusText(\"Updating environment\")"));
}

TEST_F(EnvironmentElementsTest, BroadcastsAtTheEndEvenIfNothingCouldBeTakenBack) {
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(machine_.shell.broadcasts, 0);
    EXPECT_TRUE(change_.undo({"ENV", "NONE"}));
    EXPECT_TRUE(change_.undo({"ENV", "CREATE\tMISSING"}));
    EXPECT_EQ(errors_, ErrorList{"FAILED to remove MISSING"});
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(machine_.shell.broadcasts, 1);
}

TEST_F(EnvironmentElementsTest, FailsWhatCouldNotBeWrittenBack) {
    set("DEMO", "present;added");
    machine_.registry.setReadOnly(kKey);
    for (const char* fields : {"REPLACE\tDEMO\told", "CREATE\tDEMO", "ADD\tDEMO\tadded"}) {
        EnvironmentChange change(context_);
        EXPECT_FALSE(change.undo({"ENV", fields})) << fields;
    }
    EXPECT_EQ(get("DEMO"), "present;added");
}

TEST_F(EnvironmentElementsTest, RepeatsAWalkWithoutAFailure) {
    set("OLD", "former");
    set("LIST", "a");
    for (int walk = 0; walk < 2; ++walk) {
        EnvironmentChange change(context_);
        for (const char* fields : {"REPLACE\tOLD\tformer", "CREATE\tNEW", "ADD\tLIST\tc", "ADD\tNONE\tc"}) {
            EXPECT_TRUE(change.undo({"ENV", fields})) << fields;
        }
        EXPECT_TRUE(change.finishUndo());
        EXPECT_EQ(get("OLD"), "former");
        EXPECT_EQ(get("NEW"), "(none)");
        EXPECT_EQ(get("LIST"), "a");
    }
}

TEST_F(EnvironmentElementsTest, BringsBackWhatWasThereBeforeTheFirstOfTwoInstallations) {
    const std::string group =
        "<Environment><Replace VarName='OLD'>x</Replace><Replace VarName='NEW'>y</Replace>"
        "<Append VarName='LIST'>c</Append><Insert VarName='FRONT'>c</Insert></Environment>";
    set("OLD", "former");
    set("LIST", "a;b");
    set("FRONT", "a;b");
    ASSERT_TRUE(apply(group));
    ASSERT_TRUE(change_.apply());
    EXPECT_EQ(records(),
              "ENV\tREPLACE\tOLD\tformer\r\nENV\tCREATE\tNEW\r\nENV\tADD\tLIST\tc\r\nENV\tADD\tFRONT\tc;\r\n"
              "ENV\tREPLACE\tOLD\tx\r\nENV\tREPLACE\tNEW\ty\r\nBEFORE\t" +
                  FormerState::ofBytes("a;b;c") + "\r\nENV\tADD\tLIST\tc\r\nBEFORE\t" +
                  FormerState::ofBytes("c;a;b") + "\r\nENV\tADD\tFRONT\tc;\r\n");
    for (const char* fields : {"REPLACE\tOLD\tformer", "CREATE\tNEW", "ADD\tLIST\tc", "ADD\tFRONT\tc;",
                               "REPLACE\told\tx", "REPLACE\tNew\ty", "ADD\tLIST\tc", "ADD\tFRONT\tc;"}) {
        EXPECT_TRUE(undo(fields)) << fields;
    }
    EXPECT_EQ(get("OLD"), "former");
    EXPECT_EQ(get("NEW"), "(none)");
    EXPECT_EQ(get("LIST"), "a;b;");
    EXPECT_EQ(get("FRONT"), "a;b");
}

TEST_F(EnvironmentElementsTest, TakesWhatItJoinedOutOfAValueThatItRestoresLater) {
    set("LIST", "z");
    EXPECT_TRUE(undo("ADD\tLIST\tc"));
    EXPECT_TRUE(undo("REPLACE\tLIST\ta;c"));
    EXPECT_EQ(get("LIST"), "a;");
}

TEST_F(EnvironmentElementsTest, RemovesAVariableThatOnlyItsAdditionsMade) {
    ASSERT_TRUE(
        apply("<Environment><Append VarName='A'>x</Append><Insert VarName='A'>y</Insert></Environment>"));
    EXPECT_EQ(get("A"), "y;x");
    EXPECT_TRUE(undo("ADD\tA\tx"));
    EXPECT_EQ(get("A"), "y;");
    EXPECT_TRUE(undo("ADD\tA\ty;"));
    EXPECT_EQ(get("A"), "(none)");
}

TEST_F(EnvironmentChangeTest, CreatesAnAbsentVariableAndItsKey) {
    EXPECT_TRUE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "CREATE\tDEMO");
    EXPECT_EQ(get("DEMO"), "new");
    EXPECT_EQ(machine_.registry.value(kMachine, kKey, "DEMO")->type, platform::kRegString);
    expectLines({"Create DEMO"});
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("DEMO"), "(none)");
    expectLines({"Remove DEMO"});
    EXPECT_TRUE(errors_.empty());
}

TEST_F(EnvironmentChangeTest, ReplacesAPresentVariable) {
    set("DEMO", "old; \"x\"=1");
    EXPECT_TRUE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "REPLACE\tDEMO\told; \"x\"=1");
    EXPECT_EQ(get("DEMO"), "new");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("DEMO"), "old; \"x\"=1");
    expectLines({"Replace DEMO", "Restore DEMO"});
}

TEST_F(EnvironmentChangeTest, RestoresAnEmptyValueThoughItsFieldIsLost) {
    set("DEMO", "");
    EXPECT_TRUE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "REPLACE\tDEMO\t");
    EXPECT_TRUE(remove("REPLACE\tDEMO"));
    EXPECT_EQ(get("DEMO"), "");
}

TEST_F(EnvironmentChangeTest, AppendsAndLeavesTheSeparator) {
    set("PATH", "a;b");
    EXPECT_TRUE(add("PATH", "c", kAppend));
    EXPECT_EQ(undo_, "ADD\tPATH\tc");
    EXPECT_EQ(get("PATH"), "a;b;c");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a;b;");
    expectLines({"Add to PATH", "Erase from PATH"});
}

TEST_F(EnvironmentChangeTest, InsertsWithoutALineAndRemovesTheSeparatorToo) {
    set("PATH", "a;b");
    EXPECT_TRUE(add("PATH", "c", kInsert));
    EXPECT_EQ(undo_, "ADD\tPATH\tc;");
    EXPECT_EQ(get("PATH"), "c;a;b");
    expectLines({});
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a;b");
}

TEST_F(EnvironmentChangeTest, JoinsAnAbsentVariableWithoutASeparator) {
    for (const Mode mode : {kAppend, kInsert}) {
        EXPECT_TRUE(add("NEW", "x;;y", mode));
        EXPECT_EQ(undo_, "ADD\tNEW\tx;;y");
        EXPECT_EQ(get("NEW"), "x;;y");
        EXPECT_TRUE(remove(undo_));
        EXPECT_EQ(get("NEW"), "(none)");
    }
}

TEST_F(EnvironmentChangeTest, KeepsAVariableThatOthersHaveJoinedSince) {
    EXPECT_TRUE(add("NEW", "x;;y", kAppend));
    const std::string own = undo_;
    EXPECT_TRUE(add("NEW", "z", kAppend));
    EXPECT_EQ(get("NEW"), "x;y;z");
    EXPECT_TRUE(remove(own));
    EXPECT_EQ(get("NEW"), "z");
}

TEST_F(EnvironmentChangeTest, KeepsAVariableThatWasThereAndEmpty) {
    set("EMPTY", "");
    EXPECT_TRUE(add("EMPTY", "c", kInsert));
    EXPECT_EQ(get("EMPTY"), "c;");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("EMPTY"), "");
    EXPECT_TRUE(add("EMPTY", "c", kAppend));
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("EMPTY"), ";");
}

TEST_F(EnvironmentChangeTest, RecordsAnAppendedTextWithoutItsLastSeparator) {
    set("PATH", "c;a");
    EXPECT_TRUE(add("PATH", "c;", kAppend));
    EXPECT_EQ(get("PATH"), "c;a;c;");
    EXPECT_EQ(undo_, "ADD\tPATH\tc");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "c;a;");
    EXPECT_TRUE(add("PATH", "d ;", kAppend));
    EXPECT_EQ(undo_, "ADD\tPATH\td ;");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "c;a;");
}

TEST_F(EnvironmentChangeTest, TakesAnAdditionOfNothingBack) {
    EXPECT_TRUE(add("NEW", "", kAppend));
    EXPECT_EQ(undo_, "ADD\tNEW\t");
    EXPECT_TRUE(remove("ADD\tNEW"));
    EXPECT_EQ(get("NEW"), "(none)");
    set("PATH", "a");
    EXPECT_TRUE(add("PATH", "", kInsert));
    EXPECT_EQ(get("PATH"), ";a");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a");
}

TEST_F(EnvironmentChangeTest, CollapsesDoubledSeparators) {
    set("PATH", "a;;b;");
    EXPECT_TRUE(add("PATH", "c;;;d", kAppend));
    EXPECT_EQ(get("PATH"), "a;b;c;d");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a;b;");
    EXPECT_TRUE(add("PATH", "c;;d;", kInsert));
    EXPECT_EQ(get("PATH"), "c;d;a;b;");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a;b;");
}

struct RemovalCase {
    const char* present;
    const char* text;
    const char* left;  // null: the text isn't there
};

TEST_F(EnvironmentChangeTest, TakesWholeEntriesOutAndNeverAPartOfOne) {
    const RemovalCase cases[] = {
        {"/opt/demo2;/opt/demo", "/opt/demo", "/opt/demo2;"},
        {"/opt/demo2;/opt/demo", "/opt/demo;", "/opt/demo2;"},
        {"/opt/demo2;/x/opt/demo;/opt/demo;b", "/opt/demo", "/opt/demo2;/x/opt/demo;b"},
        {"/x/opt/demo;/opt/demo;b", "/opt/demo;", "/x/opt/demo;b"},
        {"c;a;c;b", "c", "c;a;b"},   // the last one was appended
        {"c;a;c;b", "c;", "a;c;b"},  // the first one was put in front
        {"C:\\bin2;c:\\bin;C:\\bin", "C:\\bin", "C:\\bin2;c:\\bin;"},
        {"a;c;d;b", "c;d", "a;b"},
        {"aa;a;aa", "aa", "aa;a;"},
        {"a;a;a", "a;a;", "a"},
        {"x;;c;y", "c", "x;;y"},
        {"a;c;b", ";c;", "a;b"},
        {"/opt/demo2", "/opt/demo", nullptr},
        {"2/opt/demo", "/opt/demo;", nullptr},
        {"c:\\bin", "C:\\bin", nullptr},
        {"a;b", "c", nullptr},
        {"", "c", nullptr},
    };
    for (const RemovalCase& test : cases) {
        SCOPED_TRACE(std::string(test.present) + " without " + test.text);
        set("PATH", test.present);
        errors_.clear();
        EXPECT_EQ(remove(std::string("ADD\tPATH\t") + test.text), test.left != nullptr);
        EXPECT_EQ(get("PATH"), test.left == nullptr ? test.present : test.left);
        EXPECT_EQ(errors_.empty(), test.left != nullptr);
    }
}

TEST_F(EnvironmentChangeTest, LeavesAVariableWithoutTheAddedTextAndReportsIt) {
    set("PATH", "a;b");
    machine_.registry.setReadOnly(kKey);
    EXPECT_FALSE(remove("ADD\tPATH\tc"));
    expectLines({"FAILED to erase from PATH"});
    EXPECT_EQ(errors_, ErrorList{"FAILED to erase from PATH"});
    EXPECT_TRUE(undo("ADD\tPATH\tc"));  // an earlier walk may have been here
    EXPECT_TRUE(remove("ADD\tPATH"));
    EXPECT_EQ(get("PATH"), "a;b");
    EXPECT_TRUE(machine_.registry.operations.empty());
}

class EnvironmentPathsTest : public EnvironmentChangeTest {
protected:
    void SetUp() override {
        machine_.files.addDirectory("/opt/demo");
        machine_.files.addDirectory("/opt/other");
    }
};

TEST_F(EnvironmentPathsTest, FindsADirectoryUnderAnotherSpelling) {
    for (const char* present : {"/opt/other;/OPT/Demo", "x;\"/opt/demo/\";", "\\opt\\demo\\"}) {
        for (const char* value : {"/opt/demo", "\"/opt/demo\"", "/opt/demo/"}) {
            for (const Mode mode : {kAppend, kInsert}) {
                set("PATH", present);
                EXPECT_TRUE(add("PATH", value, mode, true));
                EXPECT_EQ(undo_, "NONE");
                EXPECT_EQ(get("PATH"), present);
            }
        }
    }
    EXPECT_TRUE(machine_.registry.operations.empty());
    EXPECT_TRUE(machine_.files.allFiles().empty());
    expectLines({});
    EXPECT_FALSE(remove("NONE"));
    EXPECT_TRUE(errors_.empty());
}

TEST_F(EnvironmentPathsTest, AddsADirectoryAgainWhereItCannotBeWrittenTo) {
    machine_.files.setReadOnly("/opt/demo");
    set("PATH", "/OPT/demo/");
    EXPECT_TRUE(add("PATH", "/opt/demo", kAppend, true));
    EXPECT_EQ(get("PATH"), "/OPT/demo/;/opt/demo");
    set("PATH", "/none");
    EXPECT_TRUE(add("PATH", "/none", kAppend, true));
    EXPECT_EQ(get("PATH"), "/none;/none");
}

TEST_F(EnvironmentPathsTest, LooksForADirectoryOnlyWhereAskedAndNotWhenReplacing) {
    set("PATH", "/opt/demo");
    EXPECT_TRUE(add("PATH", "/opt/demo", kAppend, false));
    EXPECT_EQ(get("PATH"), "/opt/demo;/opt/demo");
    EXPECT_TRUE(add("PATH", "/opt/demo", kReplace, true));
    EXPECT_EQ(get("PATH"), "/opt/demo");
    EXPECT_EQ(machine_.files.count(MemoryFileSystem::Operation::kOpen), 0);
}

TEST_F(EnvironmentPathsTest, KeepsAFileOfTheProbesName) {
    const std::string mine = std::string("/opt/demo/") + kProbeName;
    machine_.files.addFile(mine, "mine");
    set("PATH", "/opt/demo");
    EXPECT_TRUE(add("PATH", "/opt/demo", kAppend, true));
    EXPECT_EQ(get("PATH"), "/opt/demo;/opt/demo");
    EXPECT_EQ(machine_.files.content(mine), "mine");
}

TEST_F(EnvironmentChangeTest, AppendsToAValueThatJustFitsTheBuffer) {
    const std::string longest(2047, 'p');
    for (const Mode mode : {kAppend, kInsert}) {
        set("PATH", longest);
        EXPECT_TRUE(add("PATH", "/new", mode));
        EXPECT_EQ(get("PATH").size(), 2047U + 5U);
        // The value has outgrown the buffer by now; what takes the change back minds no limit.
        EXPECT_TRUE(remove(undo_));
        EXPECT_EQ(get("PATH"), longest + (mode == kAppend ? ";" : ""));
    }
}

TEST_F(EnvironmentChangeTest, LeavesALongerValueAlone) {
    for (const std::size_t size : {2048U, 32767U}) {
        set("PATH", std::string(size, 'p'));
        expectRefused("PATH", "/new", kReplace, "FAILED to replacePATH");
        expectRefused("PATH", "/new", kAppend, "FAILED to add toPATH");
        expectRefused("PATH", "/new", kInsert, "FAILED to add toPATH");
    }
}

TEST_F(EnvironmentChangeTest, ErasesFromAndRestoresValuesOfAnyLength) {
    for (const std::size_t size : {2047U, 2048U, 32767U}) {
        const std::string value(size, 'p');
        set("PATH", value + ";/new");
        EXPECT_TRUE(remove("ADD\tPATH\t/new"));
        EXPECT_EQ(get("PATH"), value + ";");
        EXPECT_TRUE(remove("REPLACE\tPATH\told"));
        EXPECT_EQ(get("PATH"), "old");
    }
}

TEST_F(EnvironmentChangeTest, ReplacesOnlyWhatTheRecordCanHold) {
    const std::size_t room = ActionLogFormat::kLineLimit - std::string_view("ENV\tREPLACE\tPATH\t").size();
    set("PATH", std::string(room, 'p'));
    EXPECT_TRUE(add("PATH", "new", kReplace));
    for (const std::size_t size : {room + 1, std::size_t{2047}}) {
        set("PATH", std::string(size, 'p'));
        ui_.take();
        machine_.registry.operations.clear();
        expectRefused("PATH", "new", kReplace, "FAILED to replacePATH");
    }
}

TEST_F(EnvironmentChangeTest, ReplacesNoValueThatTheRecordWouldChange) {
    for (const char* present : {"a\tb", "a\nb", "a\rb", "a ", "a\t"}) {
        set("DEMO", present);
        expectRefused("DEMO", "new", kReplace, "FAILED to replaceDEMO");
    }
    // Nothing of it goes into the record here.
    set("DEMO", "a\tb");
    EXPECT_TRUE(add("DEMO", "c", kAppend));
    EXPECT_EQ(get("DEMO"), "a\tb;c");
}

TEST_F(EnvironmentChangeTest, AddsNothingThatCouldNotBeFoundAgain) {
    set("DEMO", "old");
    for (const std::string& value : {std::string("a\tb"), std::string("a\nb"), std::string(1023, 'v')}) {
        expectRefused("DEMO", value, kAppend, "FAILED to add toDEMO");
        expectRefused("DEMO", value, kInsert, "FAILED to add toDEMO");
    }
    expectRefused("DEMO", "a ", kAppend, "FAILED to add toDEMO");
    expectRefused("DEMO", std::nullopt, kReplace, "FAILED to replaceDEMO");
    expectRefused("DEMO", std::nullopt, kAppend, "FAILED to add toDEMO");
}

TEST_F(EnvironmentChangeTest, RefusesNamesThatNoRecordHolds) {
    for (const char* name : {"", "A\tB", "A\nB"}) {
        expectRefused(name, "v", kReplace, std::string("FAILED to create ") + name);
        expectRefused(name, "v", kAppend, std::string("FAILED to add to") + name);
        ui_.take();
    }
    expectRefused("A ", "v", kReplace, "FAILED to create A ");
    expectRefused("A ", "", kAppend, "FAILED to add toA ");
}

TEST_F(EnvironmentChangeTest, LeavesValuesThatAreNoTextsAlone) {
    int created = 0;
    ASSERT_EQ(machine_.registry.createKey(kMachine, kKey, kNative, created), 0);
    for (const platform::RegistryValue& value :
         {platform::RegistryValue{platform::kRegDword, std::string("\1\0\0\0", 4)},
          platform::RegistryValue{platform::kRegMultiString, "a"},
          platform::RegistryValue{platform::kRegString, std::string("a\0b", 3)}}) {
        ASSERT_EQ(machine_.registry.writeValue(kMachine, kKey, kNative, "DEMO", value), 0);
        expectRefused("DEMO", "v", kReplace, "FAILED to replaceDEMO");
        expectRefused("DEMO", "v", kAppend, "FAILED to add toDEMO");
        expectRefused("DEMO", "v", kInsert, "FAILED to add toDEMO");
        EXPECT_FALSE(remove("REPLACE\tDEMO\told"));
        EXPECT_FALSE(remove("ADD\tDEMO\ta"));
        expectLines({"FAILED to restore DEMO", "FAILED to erase from DEMO"});
        EXPECT_EQ(errors_, (ErrorList{"FAILED to restore DEMO", "FAILED to erase from DEMO"}));
        errors_.clear();
        EXPECT_EQ(machine_.registry.value(kMachine, kKey, "DEMO")->data, value.data);
        EXPECT_EQ(machine_.registry.value(kMachine, kKey, "DEMO")->type, value.type);
    }
}

TEST_F(EnvironmentChangeTest, KeepsTheTypeOfAValueWithReferences) {
    for (const Mode mode : kModes) {
        setExpandable("PATH", "%A%");
        EXPECT_TRUE(add("PATH", "c", mode));
        EXPECT_EQ(typeOf("PATH"), platform::kRegExpandString);
        EXPECT_TRUE(remove(undo_));
        EXPECT_EQ(get("PATH"), mode == kAppend ? "%A%;" : "%A%");
        EXPECT_EQ(typeOf("PATH"), platform::kRegExpandString);
    }
}

TEST_F(EnvironmentChangeTest, MakesPlainVariablesAndLeavesPlainOnesPlain) {
    for (const Mode mode : kModes) {
        set("OLD", "%A%");
        for (const char* name : {"OLD", "NEW"}) {
            EXPECT_TRUE(add(name, "%B%", mode));
            EXPECT_EQ(typeOf(name), platform::kRegString);
            EXPECT_TRUE(remove(undo_));
        }
        EXPECT_EQ(typeOf("OLD"), platform::kRegString);
        EXPECT_EQ(typeOf("NEW"), 0U);
    }
}

TEST_F(EnvironmentChangeTest, ReportsAWriteThatFails) {
    set("DEMO", "old");
    machine_.registry.setReadOnly(kKey);
    EXPECT_FALSE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "REPLACE\tDEMO\told");
    EXPECT_FALSE(add("NEW", "new", kReplace));
    EXPECT_EQ(undo_, "CREATE\tNEW");
    EXPECT_FALSE(add("DEMO", "new", kAppend));
    EXPECT_FALSE(add("DEMO", "new", kInsert));
    EXPECT_FALSE(remove("REPLACE\tDEMO\told"));
    EXPECT_FALSE(remove("CREATE\tDEMO"));
    EXPECT_FALSE(remove("ADD\tDEMO\told"));
    EXPECT_EQ(get("DEMO"), "old");
    const std::string reason = platform::registryErrorText(platform::kRegAccessDenied);
    EXPECT_EQ(reasons().size(), 7U);
    EXPECT_EQ(reasons().front(), "addMessage(\"DEMO: " + reason + "\")");
    EXPECT_EQ(reasons().back(), "addMessage(\"DEMO: " + reason + "\")");
    expectLines({"FAILED to replaceDEMO", "FAILED to create NEW", "FAILED to add toDEMO",
                 "FAILED to restore DEMO", "FAILED to remove DEMO", "FAILED to erase from DEMO"});
    EXPECT_EQ(errors_, (ErrorList{"FAILED to replaceDEMO", "FAILED to create NEW", "FAILED to add toDEMO",
                                  "FAILED to add toDEMO", "FAILED to restore DEMO", "FAILED to remove DEMO",
                                  "FAILED to erase from DEMO"}));
    EXPECT_EQ(get("DEMO"), "old");
}

TEST_F(EnvironmentChangeTest, NeverTakesAnUnreadableVariableForAnAbsentOne) {
    set("DEMO", "old");
    machine_.registry.setForbidden(kKey);
    expectRefused("DEMO", "new", kReplace, "FAILED to replaceDEMO");
    expectRefused("DEMO", "new", kAppend, "FAILED to add toDEMO");
    expectRefused("DEMO", "new", kInsert, "FAILED to add toDEMO");
}

TEST_F(EnvironmentChangeTest, FailsToEraseFromOrRemoveAMissingVariable) {
    EXPECT_FALSE(remove("ADD\tNONE\tx"));
    EXPECT_FALSE(remove("CREATE\tNONE"));
    expectLines({"FAILED to erase from NONE", "FAILED to remove NONE"});
    EXPECT_TRUE(remove("REPLACE\tNONE\tback"));
    EXPECT_EQ(get("NONE"), "back");
}

TEST_F(EnvironmentChangeTest, DoesNothingForOtherModes) {
    EXPECT_TRUE(add("DEMO", "v", static_cast<Mode>(0)));
    EXPECT_EQ(undo_, "NONE");
    EXPECT_TRUE(add("DEMO", "v", static_cast<Mode>(4)));
    EXPECT_TRUE(machine_.registry.operations.empty());
    expectLines({});
}

TEST_F(EnvironmentChangeTest, TakesNothingBackByDamagedRecords) {
    set("DEMO", "old");
    for (const char* kind : {"REPLACE", "CREATE", "ADD"}) {
        EXPECT_TRUE(remove(kind));
        EXPECT_TRUE(remove(std::string(kind) + "\t\t"));
    }
    for (const char* text : {"", "NONE", "\t", "create\tDEMO", "CREATED\tDEMO", "\tCREATE\tDEMO",
                             "\xff\xfe\x01", "REPLACE DEMO x"}) {
        EXPECT_FALSE(remove(text)) << text;
    }
    EXPECT_EQ(get("DEMO"), "old");
    EXPECT_TRUE(machine_.registry.operations.empty());
    EXPECT_TRUE(errors_.empty());
    expectLines({});
}

TEST_F(EnvironmentChangeTest, WorksWithoutAFrontEnd) {
    Report report(nullptr, nullptr);
    const RecordedResult result = EnvironmentChange::add(bundle_, report, {"DEMO", "v", kReplace});
    EXPECT_TRUE(result.done);
    EXPECT_TRUE(EnvironmentChange::remove(bundle_, report, result.undo));
}

TEST_F(EnvironmentChangeTest, BroadcastsAndReportsAFailureAsAnErrorAlone) {
    EnvironmentChange::broadcast(machine_.shell, report_);
    EXPECT_EQ(machine_.shell.broadcasts, 1);
    EXPECT_TRUE(errors_.empty());
    machine_.shell.broadcastWorks = false;
    EnvironmentChange::broadcast(machine_.shell, report_);
    EXPECT_EQ(errors_, ErrorList{"FAILED to make the changed environment known"});
    expectLines({});
}

TEST_F(EnvironmentChangeTest, ComesBackFromEachModeWithWhatThePresentValueWas) {
    for (const char* present : {"a", "a;b", "x y", "%R%\\s;\"C:\\p q\""}) {
        for (const Mode mode : kModes) {
            set("V", present);
            ASSERT_TRUE(add("V", "C:\\new dir", mode));
            ASSERT_TRUE(remove(undo_));
            EXPECT_EQ(get("V"), std::string(present) + (mode == kAppend ? ";" : ""));
        }
    }
}

// A repetition counts its texts: what the first record takes out makes the list the one that was there before
// the second.
TEST_F(EnvironmentElementsTest, TakesOutATextThatWasAddedTwice) {
    set("PATH", "/bin");
    EXPECT_TRUE(
        apply("<Environment><Append VarName='PATH'>/x</Append><Append VarName='PATH'>/x</Append>"
              "</Environment>"));
    EXPECT_NE(records().find("BEFORE\t"), std::string::npos);
    EXPECT_TRUE(change_.undo({"ENV", "ADD\tPATH\t/x"}));
    const std::string former = records().substr(records().find("BEFORE\t") + 7, 32);
    EXPECT_TRUE(change_.undo({"ENV", "ADD\tPATH\t/x", former}));
    EXPECT_EQ(get("PATH"), "/bin;");
}

}  // namespace
