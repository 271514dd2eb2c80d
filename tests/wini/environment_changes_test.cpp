#include "wini/environment_changes.h"

#include <gtest/gtest.h>

#include "engine/action_log_format.h"
#include "fakes/fake_shell_objects.h"
#include "fakes/memory_file_system.h"
#include "fakes/memory_registry.h"
#include "fakes/recording_ui.h"
#include "platform/system_environment.h"
#include "wini/same_path.h"

namespace {

constexpr auto kMachine = platform::RegistryRoot::kLocalMachine;
constexpr auto kNative = platform::RegistryView::kNative;
constexpr const char* kKey = platform::kSystemEnvironmentKey;
constexpr EnvironmentMode kModes[] = {EnvironmentMode::kReplace, EnvironmentMode::kAppend,
                                      EnvironmentMode::kInsert};
constexpr EnvironmentMode kReplace = EnvironmentMode::kReplace;
constexpr EnvironmentMode kAppend = EnvironmentMode::kAppend;
constexpr EnvironmentMode kInsert = EnvironmentMode::kInsert;

class EnvironmentChangesTest : public testing::Test {
protected:
    void set(const char* name, const std::string& value) { registry_.addText(kMachine, kKey, name, value); }
    // "(none)" when the variable is absent.
    std::string get(const char* name) {
        const platform::RegistryValue* value = registry_.value(kMachine, kKey, name);
        return value == nullptr ? "(none)" : value->data;
    }
    bool add(const char* name, const char* value, EnvironmentMode mode, bool isPath = false) {
        undo_ = "left over";
        return changes_.addEnvironmentEntry(name, value, mode, undo_, &ui_, isPath);
    }
    bool remove(const std::string& undo) { return changes_.removeEnvironmentEntry(undo.c_str(), &ui_); }
    void expectLines(const std::vector<std::string>& lines) {
        std::vector<std::string> calls;
        for (const std::string& line : lines) {
            calls.push_back("addFileLine(\"" + line + "\", 0)");
        }
        EXPECT_EQ(ui_.take(), calls);
    }
    // Nothing is written, there is nothing to undo, and the failure is told.
    void expectRefused(const char* name, const char* value, EnvironmentMode mode, const std::string& line) {
        const std::string present = get(name == nullptr ? "" : name);
        const std::size_t writes = registry_.operations.size();
        EXPECT_FALSE(add(name, value, mode));
        EXPECT_EQ(undo_, "");
        EXPECT_EQ(get(name == nullptr ? "" : name), present);
        EXPECT_EQ(registry_.operations.size(), writes);
        EXPECT_EQ(errors_, ErrorList{line});
        expectLines(mode == kInsert ? std::vector<std::string>{} : std::vector<std::string>{line});
        errors_.clear();
    }

    MemoryRegistry registry_;
    MemoryFileSystem files_;
    FakeShellObjects shell_;
    ErrorList errors_;
    RecordingUI ui_;
    EnvironmentChanges changes_{registry_, files_, shell_, errors_};
    std::string undo_;
};

TEST_F(EnvironmentChangesTest, CreatesAnAbsentVariableAndItsKey) {
    EXPECT_TRUE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "CREATE\tDEMO");
    EXPECT_EQ(get("DEMO"), "new");
    EXPECT_EQ(registry_.value(kMachine, kKey, "DEMO")->type, platform::kRegString);
    expectLines({"Create DEMO"});
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("DEMO"), "(none)");
    expectLines({"Remove DEMO"});
    EXPECT_TRUE(errors_.empty());
}

TEST_F(EnvironmentChangesTest, ReplacesAPresentVariable) {
    set("DEMO", "old; \"x\"=1");
    EXPECT_TRUE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "REPLACE\tDEMO\told; \"x\"=1");
    EXPECT_EQ(get("DEMO"), "new");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("DEMO"), "old; \"x\"=1");
    expectLines({"Replace DEMO", "Restore DEMO"});
}

TEST_F(EnvironmentChangesTest, RestoresAnEmptyValueThoughItsFieldIsLost) {
    set("DEMO", "");
    EXPECT_TRUE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "REPLACE\tDEMO\t");
    EXPECT_TRUE(remove("REPLACE\tDEMO"));
    EXPECT_EQ(get("DEMO"), "");
}

TEST_F(EnvironmentChangesTest, AppendsAndLeavesTheSeparatorBehind) {
    set("PATH", "a;b");
    EXPECT_TRUE(add("PATH", "c", kAppend));
    EXPECT_EQ(undo_, "ADD\tPATH\tc");
    EXPECT_EQ(get("PATH"), "a;b;c");
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a;b;");
    expectLines({"Add to PATH", "Erase from PATH"});
}

TEST_F(EnvironmentChangesTest, InsertsWithoutALineAndTakesTheSeparatorAlong) {
    set("PATH", "a;b");
    EXPECT_TRUE(add("PATH", "c", kInsert));
    EXPECT_EQ(undo_, "ADD\tPATH\tc;");
    EXPECT_EQ(get("PATH"), "c;a;b");
    expectLines({});
    EXPECT_TRUE(remove(undo_));
    EXPECT_EQ(get("PATH"), "a;b");
}

TEST_F(EnvironmentChangesTest, JoinsAnAbsentVariableWithoutASeparator) {
    for (const EnvironmentMode mode : {kAppend, kInsert}) {
        EXPECT_TRUE(add("NEW", "x;;y", mode));
        EXPECT_EQ(undo_, "ADD\tNEW\tx;;y");
        EXPECT_EQ(get("NEW"), "x;;y");
        EXPECT_TRUE(remove(undo_));
        EXPECT_EQ(get("NEW"), "");
        EXPECT_TRUE(changes_.deleteEnvironmentValue("NEW"));
    }
}

TEST_F(EnvironmentChangesTest, CollapsesDoubledSeparators) {
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

TEST_F(EnvironmentChangesTest, ErasesTheFirstOccurrenceInItsOwnCaseOnly) {
    set("PATH", "C:\\bin2;c:\\bin;C:\\bin");
    EXPECT_TRUE(remove("ADD\tPATH\tc:\\bin"));
    EXPECT_EQ(get("PATH"), "C:\\bin2;;C:\\bin");
    EXPECT_TRUE(remove("ADD\tPATH\tC:\\bin"));
    EXPECT_EQ(get("PATH"), "2;;C:\\bin");
}

TEST_F(EnvironmentChangesTest, WritesNothingWhenTheAddedTextHasGone) {
    set("PATH", "a;b");
    registry_.setReadOnly(kKey);
    EXPECT_TRUE(remove("ADD\tPATH\tc"));
    EXPECT_TRUE(remove("ADD\tPATH"));
    EXPECT_EQ(get("PATH"), "a;b");
    EXPECT_TRUE(registry_.operations.empty());
}

class EnvironmentPathsTest : public EnvironmentChangesTest {
protected:
    void SetUp() override {
        files_.addDirectory("/opt/demo");
        files_.addDirectory("/opt/other");
    }
};

TEST_F(EnvironmentPathsTest, FindADirectoryUnderAnotherSpelling) {
    for (const char* present : {"/opt/other;/OPT/Demo", "x;\"/opt/demo/\";", "\\opt\\demo\\"}) {
        for (const char* value : {"/opt/demo", "\"/opt/demo\"", "/opt/demo/"}) {
            for (const EnvironmentMode mode : {kAppend, kInsert}) {
                set("PATH", present);
                EXPECT_TRUE(add("PATH", value, mode, true));
                EXPECT_EQ(undo_, "NONE");
                EXPECT_EQ(get("PATH"), present);
            }
        }
    }
    EXPECT_TRUE(registry_.operations.empty());
    EXPECT_TRUE(files_.allFiles().empty());
    expectLines({});
    EXPECT_FALSE(remove("NONE"));
    EXPECT_TRUE(errors_.empty());
}

TEST_F(EnvironmentPathsTest, AreAddedASecondTimeWhereTheDirectoryCannotBeWrittenTo) {
    files_.setReadOnly("/opt/demo");
    set("PATH", "/OPT/demo/");
    EXPECT_TRUE(add("PATH", "/opt/demo", kAppend, true));
    EXPECT_EQ(get("PATH"), "/OPT/demo/;/opt/demo");
    set("PATH", "/none");
    EXPECT_TRUE(add("PATH", "/none", kAppend, true));
    EXPECT_EQ(get("PATH"), "/none;/none");
}

TEST_F(EnvironmentPathsTest, AreNotLookedForUnlessAskedOrWhenReplacing) {
    set("PATH", "/opt/demo");
    EXPECT_TRUE(add("PATH", "/opt/demo", kAppend, false));
    EXPECT_EQ(get("PATH"), "/opt/demo;/opt/demo");
    EXPECT_TRUE(add("PATH", "/opt/demo", kReplace, true));
    EXPECT_EQ(get("PATH"), "/opt/demo");
    EXPECT_EQ(files_.count(MemoryFileSystem::Operation::kOpen), 0);
}

TEST_F(EnvironmentPathsTest, SurviveAFileOfTheProbesName) {
    const std::string mine = std::string("/opt/demo/") + kProbeName;
    files_.addFile(mine, "mine");
    set("PATH", "/opt/demo");
    EXPECT_TRUE(add("PATH", "/opt/demo", kAppend, true));
    EXPECT_EQ(get("PATH"), "/opt/demo;/opt/demo");
    EXPECT_EQ(files_.content(mine), "mine");
}

TEST_F(EnvironmentChangesTest, AppendsToAValueThatJustFitsTheBuffer) {
    const std::string longest(2047, 'p');
    for (const EnvironmentMode mode : {kAppend, kInsert}) {
        set("PATH", longest);
        EXPECT_TRUE(add("PATH", "/new", mode));
        EXPECT_EQ(get("PATH").size(), 2047U + 5U);
        // The value has outgrown the buffer by now; what takes the change back minds no limit.
        EXPECT_TRUE(remove(undo_));
        EXPECT_EQ(get("PATH"), longest + (mode == kAppend ? ";" : ""));
    }
}

TEST_F(EnvironmentChangesTest, LeavesALongerValueAlone) {
    for (const std::size_t size : {2048U, 32767U}) {
        set("PATH", std::string(size, 'p'));
        expectRefused("PATH", "/new", kReplace, "FAILED to replacePATH");
        expectRefused("PATH", "/new", kAppend, "FAILED to add toPATH");
        expectRefused("PATH", "/new", kInsert, "FAILED to add toPATH");
    }
}

TEST_F(EnvironmentChangesTest, ErasesFromAndRestoresValuesOfAnyLength) {
    for (const std::size_t size : {2047U, 2048U, 32767U}) {
        const std::string value(size, 'p');
        set("PATH", value + ";/new");
        EXPECT_TRUE(remove("ADD\tPATH\t/new"));
        EXPECT_EQ(get("PATH"), value + ";");
        EXPECT_TRUE(remove("REPLACE\tPATH\told"));
        EXPECT_EQ(get("PATH"), "old");
    }
}

TEST_F(EnvironmentChangesTest, ReplacesOnlyWhatTheRecordCanHold) {
    const std::size_t room = ActionLogFormat::kLineLimit - std::string_view("ENV\tREPLACE\tPATH\t").size();
    set("PATH", std::string(room, 'p'));
    EXPECT_TRUE(add("PATH", "new", kReplace));
    for (const std::size_t size : {room + 1, std::size_t{2047}}) {
        set("PATH", std::string(size, 'p'));
        ui_.take();
        registry_.operations.clear();
        expectRefused("PATH", "new", kReplace, "FAILED to replacePATH");
    }
}

TEST_F(EnvironmentChangesTest, ReplacesNoValueThatTheRecordWouldChange) {
    for (const char* present : {"a\tb", "a\nb", "a\rb", "a ", "a\t"}) {
        set("DEMO", present);
        expectRefused("DEMO", "new", kReplace, "FAILED to replaceDEMO");
    }
    // Nothing of it goes into the record here.
    set("DEMO", "a\tb");
    EXPECT_TRUE(add("DEMO", "c", kAppend));
    EXPECT_EQ(get("DEMO"), "a\tb;c");
}

TEST_F(EnvironmentChangesTest, AddsNothingThatCouldNotBeFoundAgain) {
    set("DEMO", "old");
    for (const std::string& value : {std::string("a\tb"), std::string("a\nb"), std::string(1023, 'v')}) {
        expectRefused("DEMO", value.c_str(), kAppend, "FAILED to add toDEMO");
        expectRefused("DEMO", value.c_str(), kInsert, "FAILED to add toDEMO");
    }
    expectRefused("DEMO", "a ", kAppend, "FAILED to add toDEMO");
    expectRefused("DEMO", nullptr, kReplace, "FAILED to replaceDEMO");
    expectRefused("DEMO", nullptr, kAppend, "FAILED to add toDEMO");
}

TEST_F(EnvironmentChangesTest, RefusesNamesThatNoRecordHolds) {
    for (const char* name : {"", "A\tB", "A\nB"}) {
        expectRefused(name, "v", kReplace, std::string("FAILED to create ") + name);
        expectRefused(name, "v", kAppend, std::string("FAILED to add to") + name);
        ui_.take();
    }
    expectRefused("A ", "v", kReplace, "FAILED to create A ");
    expectRefused("A ", "", kAppend, "FAILED to add toA ");
    expectRefused(nullptr, "v", kReplace, "FAILED to create ");
}

TEST_F(EnvironmentChangesTest, LeavesValuesThatAreNoTextsAlone) {
    int created = 0;
    ASSERT_EQ(registry_.createKey(kMachine, kKey, kNative, created), 0);
    for (const platform::RegistryValue& value :
         {platform::RegistryValue{platform::kRegDword, std::string("\1\0\0\0", 4)},
          platform::RegistryValue{platform::kRegMultiString, "a"},
          platform::RegistryValue{platform::kRegString, std::string("a\0b", 3)}}) {
        ASSERT_EQ(registry_.writeValue(kMachine, kKey, kNative, "DEMO", value), 0);
        expectRefused("DEMO", "v", kReplace, "FAILED to replaceDEMO");
        expectRefused("DEMO", "v", kAppend, "FAILED to add toDEMO");
        expectRefused("DEMO", "v", kInsert, "FAILED to add toDEMO");
        EXPECT_FALSE(remove("REPLACE\tDEMO\told"));
        EXPECT_FALSE(remove("ADD\tDEMO\ta"));
        expectLines({"FAILED to restore DEMO", "FAILED to erase from DEMO"});
        EXPECT_EQ(errors_, (ErrorList{"FAILED to restore DEMO", "FAILED to erase from DEMO"}));
        errors_.clear();
        EXPECT_EQ(registry_.value(kMachine, kKey, "DEMO")->data, value.data);
        EXPECT_EQ(registry_.value(kMachine, kKey, "DEMO")->type, value.type);
    }
}

TEST_F(EnvironmentChangesTest, WritesPlainTextInThePlaceOfReferences) {
    int created = 0;
    ASSERT_EQ(registry_.createKey(kMachine, kKey, kNative, created), 0);
    ASSERT_EQ(registry_.writeValue(kMachine, kKey, kNative, "PATH", {platform::kRegExpandString, "%A%"}), 0);
    EXPECT_TRUE(add("PATH", "c", kAppend));
    EXPECT_EQ(get("PATH"), "%A%;c");
    EXPECT_EQ(registry_.value(kMachine, kKey, "PATH")->type, platform::kRegString);
}

TEST_F(EnvironmentChangesTest, TellsAWriteThatFails) {
    set("DEMO", "old");
    registry_.setReadOnly(kKey);
    EXPECT_FALSE(add("DEMO", "new", kReplace));
    EXPECT_EQ(undo_, "REPLACE\tDEMO\told");
    EXPECT_FALSE(add("NEW", "new", kReplace));
    EXPECT_EQ(undo_, "CREATE\tNEW");
    EXPECT_FALSE(add("DEMO", "new", kAppend));
    EXPECT_FALSE(add("DEMO", "new", kInsert));
    EXPECT_FALSE(remove("REPLACE\tDEMO\told"));
    EXPECT_FALSE(remove("CREATE\tDEMO"));
    EXPECT_FALSE(remove("ADD\tDEMO\told"));
    expectLines({"FAILED to replaceDEMO", "FAILED to create NEW", "FAILED to add toDEMO",
                 "FAILED to restore DEMO", "FAILED to remove DEMO", "FAILED to erase from DEMO"});
    EXPECT_EQ(errors_, (ErrorList{"FAILED to replaceDEMO", "FAILED to create NEW", "FAILED to add toDEMO",
                                  "FAILED to add toDEMO", "FAILED to restore DEMO", "FAILED to remove DEMO",
                                  "FAILED to erase from DEMO"}));
    EXPECT_EQ(get("DEMO"), "old");
}

TEST_F(EnvironmentChangesTest, NeverTakesAnUnreadableVariableForAnAbsentOne) {
    set("DEMO", "old");
    registry_.setForbidden(kKey);
    expectRefused("DEMO", "new", kReplace, "FAILED to replaceDEMO");
    expectRefused("DEMO", "new", kAppend, "FAILED to add toDEMO");
    expectRefused("DEMO", "new", kInsert, "FAILED to add toDEMO");
}

TEST_F(EnvironmentChangesTest, FailsToEraseFromOrRemoveAMissingVariable) {
    EXPECT_FALSE(remove("ADD\tNONE\tx"));
    EXPECT_FALSE(remove("CREATE\tNONE"));
    expectLines({"FAILED to erase from NONE", "FAILED to remove NONE"});
    EXPECT_TRUE(remove("REPLACE\tNONE\tback"));
    EXPECT_EQ(get("NONE"), "back");
}

TEST_F(EnvironmentChangesTest, DoesNothingForOtherModes) {
    EXPECT_TRUE(add("DEMO", "v", static_cast<EnvironmentMode>(0)));
    EXPECT_EQ(undo_, "NONE");
    EXPECT_TRUE(add("DEMO", "v", static_cast<EnvironmentMode>(4)));
    EXPECT_TRUE(registry_.operations.empty());
    expectLines({});
}

TEST_F(EnvironmentChangesTest, BearsDamagedUndoTexts) {
    set("DEMO", "old");
    for (const char* kind : {"REPLACE", "CREATE", "ADD"}) {
        EXPECT_TRUE(remove(kind));
        EXPECT_TRUE(remove(std::string(kind) + "\t\t"));
    }
    for (const char* text : {"", "NONE", "\t", "create\tDEMO", "CREATED\tDEMO", "\tCREATE\tDEMO",
                             "\xff\xfe\x01", "REPLACE DEMO x"}) {
        EXPECT_FALSE(remove(text)) << text;
    }
    EXPECT_FALSE(changes_.removeEnvironmentEntry(nullptr, nullptr));
    EXPECT_EQ(get("DEMO"), "old");
    EXPECT_TRUE(registry_.operations.empty());
    EXPECT_TRUE(errors_.empty());
    expectLines({});
}

TEST_F(EnvironmentChangesTest, WorksWithoutAFrontEnd) {
    std::string undo;
    EXPECT_TRUE(changes_.addEnvironmentEntry("DEMO", "v", kReplace, undo, nullptr, false));
    EXPECT_TRUE(changes_.removeEnvironmentEntry(undo.c_str(), nullptr));
}

TEST_F(EnvironmentChangesTest, BroadcastsAndTellsOnlyTheListOfAFailure) {
    EXPECT_TRUE(changes_.broadcastEnvironmentChange());
    EXPECT_EQ(shell_.broadcasts, 1);
    EXPECT_TRUE(errors_.empty());
    shell_.broadcastWorks = false;
    EXPECT_TRUE(changes_.broadcastEnvironmentChange());
    EXPECT_EQ(errors_, ErrorList{"FAILED to make the changed environment known"});
}

TEST_F(EnvironmentChangesTest, ComesBackFromEachModeWithWhatThePresentValueWas) {
    for (const char* present : {"a", "a;b", "x y", "%R%\\s;\"C:\\p q\""}) {
        for (const EnvironmentMode mode : kModes) {
            set("V", present);
            ASSERT_TRUE(add("V", "C:\\new dir", mode));
            ASSERT_TRUE(remove(undo_));
            EXPECT_EQ(get("V"), std::string(present) + (mode == kAppend ? ";" : ""));
        }
    }
}

}  // namespace
