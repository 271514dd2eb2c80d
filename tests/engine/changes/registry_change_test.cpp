#include "engine/changes/registry_change.h"

#include <gmock/gmock.h>

#include "description/product_description.h"
#include "engine/changes/change_fixture.h"
#include "fakes/shown_calls.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryValue;
using testing::ElementsAre;
using testing::IsEmpty;
using Key = RegistryChange::Key;

constexpr char kMachine[] = "HKEY_LOCAL_MACHINE";
constexpr auto kRoot = RegistryRoot::kLocalMachine;

TEST(RegistryRootTest, KnowsTheFourHives) {
    EXPECT_EQ(registryRootOf("HKEY_CLASSES_ROOT"), RegistryRoot::kClassesRoot);
    EXPECT_EQ(registryRootOf("HKEY_CURRENT_USER"), RegistryRoot::kCurrentUser);
    EXPECT_EQ(registryRootOf("HKEY_LOCAL_MACHINE"), RegistryRoot::kLocalMachine);
    EXPECT_EQ(registryRootOf("HKEY_USERS"), RegistryRoot::kUsers);
    EXPECT_EQ(registryRootOf("HKLM"), std::nullopt);
    EXPECT_EQ(registryRootOf("HKEY_USERS2"), std::nullopt);
    EXPECT_EQ(registryRootOf(""), std::nullopt);
}

// The elements of the action and the records of their changes.
class RegistryActionTest : public ChangeTest {
protected:
    RegistryActionTest() { machine_.registry.addKey(kRoot, "Software\\Demo"); }

    bool apply(const std::string& children) {
        describe(
            "<Installation><Uninstall><InstallLogFile>/tmp/product.log</InstallLogFile></Uninstall>"
            "</Installation><Registry>" +
            children + "</Registry>");
        return change_.applyElement(tags_.firstOf("Registry"), product_);
    }
    // "(none)" when it is absent.
    std::string textAt(const std::string& path, const std::string& name, RegistryRoot root = kRoot) {
        const RegistryValue* value = machine_.registry.value(root, path, name);
        return value == nullptr ? "(none)" : value->data;
    }

    const std::string at_ = "Place='HKEY_LOCAL_MACHINE' Path='Software/Demo' ";
    ProductDescription product_{document_, expressions_};
    RegistryChange change_{context_};
};

TEST_F(RegistryActionTest, WritesAValueAndRecordsItAlone) {
    apply("<AddValue " + at_ + "Value='N' Type='REG_DWORD'>10</AddValue>");
    const RegistryValue* value = machine_.registry.value(kRoot, "Software\\Demo", "N");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->type, platform::kRegDword);
    EXPECT_EQ(value->data, std::string("\x10\0\0\0", 4));
    EXPECT_EQ(records(), "REGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\tN\r\n");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)"));
}

TEST_F(RegistryActionTest, RecordsTheLevelsThatAValueNeeded) {
    apply("<AddValue Place='HKEY_LOCAL_MACHINE' Path='Software/Demo/a/b' Value='N'>x</AddValue>");
    EXPECT_EQ(records(),
              "REGKEY\t2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b\r\n"
              "REGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b\tN\r\n");
}

TEST_F(RegistryActionTest, RecordsNothingOfAnUnrecordedChange) {
    apply("<AddValue " + at_ +
          "Value='N' ActionLog='1==2'>x</AddValue>"
          "<AddKey Place='HKEY_LOCAL_MACHINE' Path='Software/New' ActionLog='1==2'/>");
    EXPECT_EQ(textAt("Software\\Demo", "N"), "x");
    EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software\\New"));
    EXPECT_EQ(records(), "");
}

TEST_F(RegistryActionTest, RecordsNothingOfAFailedChange) {
    machine_.registry.setReadOnly("Software");
    EXPECT_FALSE(apply("<AddValue " + at_ +
                       "Value='N'>x</AddValue><AddKey Place='HKEY_LOCAL_MACHINE' Path='Software/New'/>"));
    EXPECT_THAT(machine_.registry.operations,
                ElementsAre("writeValue HKLM\\Software\\Demo:N", "createKey HKLM\\Software",
                            "createKey HKLM\\Software\\New"));
    EXPECT_EQ(records(), "");
}

TEST_F(RegistryActionTest, SaysWhichValueAndWhichKeyCouldNotBeWrittenAndGoesOn) {
    machine_.registry.setReadOnly("Software\\Demo");
    EXPECT_FALSE(apply("<AddValue " + at_ + "Value='N'>x</AddValue><AddValue " + at_ +
                       "Value=''>x</AddValue><AddKey " + at_ +
                       "/><AddKey Place='HKEY_LOCAL_MACHINE' Path='Software/Demo/a'/>"
                       "<AddValue Place='HKLM' Path='p' Value='N'>x</AddValue>"
                       "<AddKey Place='HKEY_USERS' Path='fine'/>"));
    EXPECT_TRUE(machine_.registry.hasKey(RegistryRoot::kUsers, "fine"));
    const std::vector<std::string> what = {
        "FAILED to write the value HKEY_LOCAL_MACHINE\\Software\\Demo: N",
        "FAILED to write the value HKEY_LOCAL_MACHINE\\Software\\Demo",
        "FAILED to create the key HKEY_LOCAL_MACHINE\\Software\\Demo\\a",
        "FAILED to write the value HKLM\\p: N",
    };
    ASSERT_EQ(ui_.calls.size(), what.size() + 1);
    for (std::size_t i = 0; i < what.size(); ++i) {
        EXPECT_TRUE(ui_.calls[i].starts_with("addMessage(\"" + what[i] + ": ")) << ui_.calls[i];
        EXPECT_EQ(log_.lines()[i], "ERROR: " + what[i]);
    }
    EXPECT_EQ(errors_, what);
}

TEST_F(RegistryActionTest, FailsNothingForWhatCannotBeRemoved) {
    machine_.registry.setReadOnly("Software");
    EXPECT_TRUE(apply("<RemoveValue " + at_ + "Value='N'/><RemoveKey " + at_ + "/><Drop " + at_ + "/>"));
}

TEST_F(RegistryActionTest, RecordsADefaultValueWithAFieldAtTheEnd) {
    EXPECT_TRUE(apply("<AddValue " + at_ + "Value=''>x</AddValue>"));
    EXPECT_EQ(textAt("Software\\Demo", ""), "x");
    EXPECT_EQ(records(), "REGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\t\tDEFAULT\r\n");
    EXPECT_TRUE(change_.undo({"REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo\t\tDEFAULT"}));
    EXPECT_EQ(textAt("Software\\Demo", ""), "(none)");
}

TEST_F(RegistryActionTest, RecordsAKeyOnlyWhenItWasMade) {
    apply("<AddKey " + at_ +
          ">unused</AddKey><AddKey Place='HKEY_LOCAL_MACHINE' Path='Software/Demo/a/b/c'/>");
    EXPECT_EQ(records(), "REGKEY\t3\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b\\c\r\n");
}

TEST_F(RegistryActionTest, RemovesValuesAndKeysWithoutARecord) {
    machine_.registry.addText(kRoot, "Software\\Demo", "N", "x");
    machine_.registry.addKey(kRoot, "Software\\Demo\\a\\b\\c");
    apply("<RemoveValue " + at_ +
          "Value='N'/>"
          "<RemoveKey Place='HKEY_LOCAL_MACHINE' Path='Software/Demo/a/b/c'/>"
          "<RemoveKey Place='HKEY_LOCAL_MACHINE' Path='Software/Demo/a/b' KeyCount='2'/>");
    EXPECT_THAT(machine_.registry.operations,
                ElementsAre("deleteValue HKLM\\Software\\Demo:N", "deleteKey HKLM\\Software\\Demo\\a\\b\\c",
                            "deleteKey HKLM\\Software\\Demo\\a\\b", "deleteKey HKLM\\Software\\Demo\\a"));
    EXPECT_FALSE(machine_.registry.hasKey(kRoot, "Software\\Demo\\a"));
    EXPECT_EQ(records(), "");
}

TEST_F(RegistryActionTest, ExpandsTextsOnlyWhereAsked) {
    variables_.set("V", "val");
    apply(
        "<AddValue Place='HKEY_USERS' Path='[V]' Value='[V]' Log='[V]'>[V]</AddValue>"
        "<AddValue Expand='1' Place='HKEY_USERS' Path='[V]' Value='[V]' Log='[V]'>[V]</AddValue>");
    EXPECT_EQ(textAt("[V]", "[V]", RegistryRoot::kUsers), "[V]");
    EXPECT_EQ(textAt("val", "val", RegistryRoot::kUsers), "val");
    EXPECT_THAT(ui_.calls,
                ElementsAre("addFileLine(\"[V]\", 0)", "addFileLine(\"val\", 0)", "addFileLine(null, 1)"));
}

TEST_F(RegistryActionTest, ShowsItsLineWhetherOrNotTheChangeWorked) {
    machine_.registry.setReadOnly("Software");
    apply("<AddValue " + at_ + "Value='N' Log='line'>x</AddValue>");
    EXPECT_EQ(textAt("Software\\Demo", "N"), "(none)");
    ASSERT_EQ(ui_.calls.size(), 3U);  // the first one says what failed
    EXPECT_EQ(ui_.calls[1], "addFileLine(\"line\", 0)");
    EXPECT_EQ(ui_.calls[2], "addFileLine(null, 1)");
}

TEST_F(RegistryActionTest, PassesOverChildrenWithoutAPlaceOrPathOrWithAFalseCondition) {
    apply("<AddKey Path='p'/><AddKey Place='HKEY_USERS'/><AddKey " + at_ + "Condition='1==2'/>");
    EXPECT_THAT(machine_.registry.operations, IsEmpty());
}

TEST_F(RegistryActionTest, LogsWhatItCanNotCarryOut) {
    apply("<AddValue " + at_ + ">x</AddValue><AddValue " + at_ + "Value='N'></AddValue><RemoveValue " + at_ +
          "/><Drop " + at_ + "/>");
    EXPECT_THAT(machine_.registry.operations, IsEmpty());
    EXPECT_THAT(
        log_.lines(),
        ElementsAre("ERROR: No registry value name supplied!", "ERROR: No registry value name supplied!",
                    "ERROR: No registry value name supplied!", "ERROR: Usupported registry action \"Drop\""));
}

TEST_F(RegistryActionTest, ContinuesTheProductsLogWhenNoneIsOpen) {
    writer_.close();
    logDisk_.addFile("/tmp/product.log", "FIRST\r\n");
    apply("<AddValue " + at_ + "Value='N'>x</AddValue>");
    EXPECT_EQ(logDisk_.content("/tmp/product.log"),
              "FIRST\r\nREGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\tN\r\n");
    EXPECT_FALSE(writer_.isOpen());
}

TEST_F(RegistryActionTest, ChangesTheRegistryWithoutALogAsWell) {
    writer_.close();
    logDisk_.failAt(MemoryFileSystem::Operation::kOpen, "/tmp/product.log", 1);
    apply("<AddValue " + at_ + "Value='N'>x</AddValue>");
    EXPECT_EQ(textAt("Software\\Demo", "N"), "x");
    EXPECT_FALSE(logDisk_.hasFile("/tmp/product.log"));
}

TEST_F(RegistryActionTest, LogsThatTheRecordsCouldNotBeWritten) {
    writer_.close();
    logDisk_.failFrom(MemoryFileSystem::Operation::kWrite, "/tmp/product.log", 1);
    EXPECT_FALSE(apply("<AddValue " + at_ + "Value='N'>x</AddValue>"));
    EXPECT_THAT(log_.lines(),
                ElementsAre("ERROR: FAILED to change HKEY_LOCAL_MACHINE\\Software\\Demo",
                            "ERROR: The changes of the registry could not be written to the action log"));
    EXPECT_EQ(textAt("Software\\Demo", "N"), "(none)");
}

TEST_F(RegistryActionTest, AsksForNothingOutsideActions) {
    describe("<Registry><AddKey " + at_ + "/></Registry>");
    EXPECT_TRUE(change_.apply());
    EXPECT_THAT(machine_.registry.operations, IsEmpty());
}

class RegistryUndoTest : public RegistryActionTest {
protected:
    void undo(std::string_view tag, std::string_view fields) { EXPECT_TRUE(change_.undo({tag, fields})); }
};

TEST_F(RegistryUndoTest, TakesValuesAtOnceAndKeysAtTheEndInReverse) {
    machine_.registry.addText(kRoot, "Software\\Demo\\a", "N", "x");
    machine_.registry.addKey(kRoot, "Software\\Demo\\a\\b");
    undo("REGKEY", "1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a");
    undo("REGKEY", "1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b");
    undo("REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\tN");
    EXPECT_THAT(machine_.registry.operations, ElementsAre("deleteValue HKLM\\Software\\Demo\\a:N"));
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_THAT(machine_.registry.operations,
                ElementsAre("deleteValue HKLM\\Software\\Demo\\a:N", "deleteKey HKLM\\Software\\Demo\\a\\b",
                            "deleteKey HKLM\\Software\\Demo\\a"));
    EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software\\Demo"));
}

TEST_F(RegistryUndoTest, TakesBackWhatTheActionRecorded) {
    apply("<AddValue Place='HKEY_LOCAL_MACHINE' Path='Software/Demo/a/b' Value='N'>x</AddValue>");
    undo("REGKEY", "2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b");
    undo("REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b\tN");
    change_.finishUndo();
    EXPECT_FALSE(machine_.registry.hasKey(kRoot, "Software\\Demo\\a"));
    EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software\\Demo"));
}

TEST_F(RegistryUndoTest, FailsForAValueAndAKeyThatCannotBeDeleted) {
    machine_.registry.addText(kRoot, "Software\\Demo\\a", "N", "x");
    machine_.registry.setReadOnly("Software\\Demo\\a");
    EXPECT_FALSE(change_.undo({"REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\tN"}));
    undo("REGKEY", "1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a");
    EXPECT_FALSE(change_.finishUndo());
    EXPECT_EQ(textAt("Software\\Demo\\a", "N"), "x");
    const std::vector<std::string> shown = shownCalls(ui_);
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_TRUE(shown[0].starts_with(
        "addMessage(\"FAILED to delete the value HKEY_LOCAL_MACHINE\\Software\\Demo\\a: N: "));
    EXPECT_TRUE(shown[1].starts_with(
        "addMessage(\"FAILED to delete the key HKEY_LOCAL_MACHINE\\Software\\Demo\\a: "));
}

TEST_F(RegistryUndoTest, RepeatsAWalkWithoutAFailure) {
    machine_.registry.addText(kRoot, "Software\\Demo\\a\\b", "N", "x");
    machine_.registry.addKey(kRoot, "Software\\Demo\\c\\others");
    for (int walk = 0; walk < 2; ++walk) {
        undo("REGKEY", "1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\c");
        undo("REGKEY", "2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b");
        undo("REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b\tN");
        EXPECT_TRUE(change_.finishUndo());
        EXPECT_FALSE(machine_.registry.hasKey(kRoot, "Software\\Demo\\a"));
        EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software\\Demo\\c\\others"));
    }
    EXPECT_TRUE(shownCalls(ui_).empty());
}

TEST_F(RegistryUndoTest, TakesAKeyThatWasInUseWhenItIsNoLonger) {
    machine_.registry.addKey(kRoot, "Software\\Demo\\a\\b");
    machine_.registry.addKey(kRoot, "Software\\Demo\\others");
    undo("REGKEY", "3\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\a\\b");
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_FALSE(machine_.registry.hasKey(kRoot, "Software\\Demo\\a"));
    EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software\\Demo"));
    machine_.registry.deleteKey(kRoot, "Software\\Demo\\others", platform::RegistryView::kNative);
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_FALSE(machine_.registry.hasKey(kRoot, "Software\\Demo"));
    EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software"));
}

TEST_F(RegistryUndoTest, LeavesAKeyThatTheListOfApplicationsKeepsToTheList) {
    machine_.registry.addKey(kRoot, "Software\\Demo");
    machine_.registry.addKey(kRoot, "Software\\List\\Demo");
    system_.takesKeys = true;
    undo("REGKEY", "2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo");
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(system_.calls, std::vector<std::string>{"leaveKeysToList(Software, 1)"});
    // It isn't this product's any more.
    machine_.registry.deleteKey(kRoot, "Software\\List\\Demo", platform::RegistryView::kNative);
    machine_.registry.deleteKey(kRoot, "Software\\List", platform::RegistryView::kNative);
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_TRUE(machine_.registry.hasKey(kRoot, "Software"));
}

TEST_F(RegistryUndoTest, TakesNoCutRecordForOneOfADefaultValue) {
    machine_.registry.addText(kRoot, "Software\\Demo", "", "of somebody else");
    undo("REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo");
    undo("REGVAL", "HKEY_LOCAL_MACHINE\tSoftware\\Demo\t\tDEF");
    undo("REGKEY", "1\tHKEY_LOCAL_MACHINE\t\tDEFAULT");
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(textAt("Software\\Demo", ""), "of somebody else");
    EXPECT_EQ(log_.lines().size(), 3U);
}

TEST_F(RegistryUndoTest, WarnsOfRecordsWithoutThreeFields) {
    undo("REGKEY", "1\tHKEY_LOCAL_MACHINE");
    undo("REGVAL", "HKEY_LOCAL_MACHINE\ta\tb\tc");
    undo("REGVAL", "");
    change_.finishUndo();
    EXPECT_THAT(machine_.registry.operations, IsEmpty());
    EXPECT_THAT(log_.lines(),
                ElementsAre("WARNING: (Dev) Wrong number of tokens in the install.log for REGKEY",
                            "WARNING: (Dev) Wrong number of tokens in the install.log for REGVAL",
                            "WARNING: (Dev) Wrong number of tokens in the install.log for REGVAL"));
}

// A registry in which one key can't be made.
class BreakingRegistry : public MemoryRegistry {
public:
    std::string broken;
    int createKey(RegistryRoot root, std::string_view path, platform::RegistryView view,
                  int& outCreated) override {
        outCreated = 0;
        return path == broken ? static_cast<int>(platform::kRegDiskFull)
                              : MemoryRegistry::createKey(root, path, view, outCreated);
    }
};

// The operations, without elements and records.
class RegistryChangeTest : public testing::Test {
protected:
    RegistryChangeTest() { registry_.addKey(kRoot, "Software"); }

    int write(std::string_view path, std::string_view type, std::string_view data,
              std::string_view name = "Name") {
        const auto result = RegistryChange::writeValue(registry_, {{kMachine, path}, name, type, data});
        created_ = result.createdLevels;
        return result.status.value_or(-1);
    }
    int createKey(std::string_view path) { return RegistryChange::createKey(registry_, {kMachine, path}); }
    int deleteKeys(std::string_view path, int levels) {
        return RegistryChange::deleteKeys(registry_, {kMachine, path}, levels);
    }
    std::optional<int> deleteValue(std::string_view path, std::string_view name) {
        return RegistryChange::deleteValue(registry_, {kMachine, path}, name);
    }
    // What is written for the text, as type and bytes.
    std::pair<std::uint32_t, std::string> written(std::string_view type, std::string_view data) {
        EXPECT_EQ(write("Software", type, data), 0);
        const RegistryValue* value = registry_.value(kRoot, "Software", "Name");
        return value == nullptr ? std::make_pair(99U, std::string("none"))
                                : std::make_pair(value->type, value->data);
    }
    std::uint32_t doubleWord(std::string_view data) {
        const auto [type, bytes] = written("REG_DWORD", data);
        EXPECT_EQ(type, platform::kRegDword);
        std::uint32_t number = 0;
        for (std::size_t i = bytes.size(); i > 0; --i) {
            number = number << 8 | static_cast<unsigned char>(bytes[i - 1]);
        }
        return bytes.size() == 4 ? number : 0xDEAD;
    }
    std::string binary(std::string_view data) {
        const auto [type, bytes] = written("REG_BINARY", data);
        EXPECT_EQ(type, platform::kRegBinary);
        return bytes;
    }
    bool hasKey(std::string_view path) { return registry_.hasKey(kRoot, path); }

    BreakingRegistry registry_;
    int created_ = 77;
};

using Written = std::pair<std::uint32_t, std::string>;

TEST_F(RegistryChangeTest, WritesTextWithoutATypeAndAsText) {
    EXPECT_EQ(written("REG_SZ", "text"), Written(platform::kRegString, "text"));
    EXPECT_EQ(written("", "other"), Written(platform::kRegString, "other"));
    EXPECT_EQ(written("", ""), Written(platform::kRegString, ""));
    EXPECT_EQ(created_, 0);
}

TEST_F(RegistryChangeTest, ReadsDoubleWordsInBaseSixteen) {
    EXPECT_EQ(doubleWord("ff"), 255U);
    EXPECT_EQ(doubleWord("FF"), 255U);
    EXPECT_EQ(doubleWord("10"), 16U);
    EXPECT_EQ(doubleWord("0x10"), 16U);
    EXPECT_EQ(doubleWord("FFFFFFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(doubleWord("1FFFFFFFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(doubleWord("FFFFFFFFFFFFFFFFFFFFFFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(doubleWord("-1"), 0xFFFFFFFFU);
    EXPECT_EQ(doubleWord("none"), 0U);
    EXPECT_EQ(doubleWord(""), 0U);
}

TEST_F(RegistryChangeTest, ReadsBinaryDataByPairs) {
    EXPECT_EQ(binary("00ff1A2b"), std::string("\x00\xff\x1a\x2b", 4));
    EXPECT_EQ(binary("aAbB"), "\xaa\xbb");
    EXPECT_EQ(binary(""), "");
}

TEST_F(RegistryChangeTest, WritesZeroesForHalfAPair) {
    EXPECT_EQ(binary("abc"), std::string("\0", 1));
    EXPECT_EQ(binary("abcde"), std::string("\0\0", 2));
    EXPECT_EQ(binary("a"), "");
}

TEST_F(RegistryChangeTest, TakesNonsenseInBinaryDataWithoutAComplaint) {
    EXPECT_EQ(binary("zz??").size(), 2U);
}

TEST_F(RegistryChangeTest, WritesAnEmptyTextForAnotherType) {
    EXPECT_EQ(written("REG_QWORD", "5"), Written(platform::kRegString, ""));
    EXPECT_EQ(written("reg_sz", "5"), Written(platform::kRegString, ""));
}

TEST_F(RegistryChangeTest, MakesTheMissingKeysOfAValueAndCountsThem) {
    EXPECT_EQ(write("Software/Demo\\Plug-ins", "", "x"), 0);
    EXPECT_EQ(created_, 2);
    ASSERT_NE(registry_.value(kRoot, "Software\\Demo\\Plug-ins", "Name"), nullptr);
    EXPECT_EQ(write("Software/Demo/Plug-ins", "", "y"), 0);
    EXPECT_EQ(created_, 0);
}

TEST_F(RegistryChangeTest, WritesTheDefaultValue) {
    EXPECT_EQ(write("Software", "", "x", ""), 0);
    EXPECT_NE(registry_.value(kRoot, "Software", ""), nullptr);
}

TEST_F(RegistryChangeTest, RefusesOtherRoots) {
    for (const Key key : {Key{"HKLM", "Software"}, Key{"", "Software"}}) {
        const auto result = RegistryChange::writeValue(registry_, {key, "a", "", "b"});
        EXPECT_EQ(result.status, std::nullopt);
        EXPECT_EQ(result.createdLevels, 0);
        EXPECT_FALSE(result.isDone());
        EXPECT_EQ(RegistryChange::createKey(registry_, key), 0);
        EXPECT_EQ(RegistryChange::deleteValue(registry_, key, "a"), std::nullopt);
        EXPECT_EQ(RegistryChange::deleteKeys(registry_, key, 1), 0);
    }
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangeTest, GivesTheSystemsError) {
    registry_.setReadOnly("Software\\Closed");
    registry_.addKey(kRoot, "Software\\Closed");
    EXPECT_EQ(write("Software\\Closed", "", "x"), platform::kRegAccessDenied);
    EXPECT_EQ(created_, 0);
    EXPECT_EQ(write("Software\\Closed\\Below", "", "x"), platform::kRegAccessDenied);
    EXPECT_EQ(created_, 0);
    EXPECT_EQ(deleteValue("Software", "none"), platform::kRegNotFound);
}

// The value fails where its key could be made.
class UnwritableRegistry : public MemoryRegistry {
public:
    int writeValue(RegistryRoot root, std::string_view path, platform::RegistryView view, std::string_view,
                   const RegistryValue&) override {
        const int status = testKey(root, path, view);
        return status == platform::kRegOk ? static_cast<int>(platform::kRegDiskFull) : status;
    }
};

TEST(RegistryChangeFailureTest, LeavesNoKeysOfAValueThatFails) {
    UnwritableRegistry registry;
    registry.addKey(kRoot, "Software");
    const auto result = RegistryChange::writeValue(registry, {{kMachine, "Software\\a\\b"}, "n", "", "d"});
    EXPECT_EQ(result.status, platform::kRegDiskFull);
    EXPECT_EQ(result.createdLevels, 0);
    EXPECT_FALSE(registry.hasKey(kRoot, "Software\\a"));
    EXPECT_TRUE(registry.hasKey(kRoot, "Software"));
}

TEST_F(RegistryChangeTest, CountsTheLevelsOfANewKey) {
    EXPECT_EQ(createKey("Software\\a\\b\\c"), 3);
    EXPECT_EQ(createKey("Software/a/b/c"), 0);
    EXPECT_EQ(createKey("Software\\a\\\\d\\"), 1);
    EXPECT_TRUE(hasKey("Software\\a\\d"));
}

TEST_F(RegistryChangeTest, TakesBackTheLevelsOfAKeyThatFails) {
    registry_.broken = "Software\\a\\b\\c";
    EXPECT_EQ(createKey("Software\\a\\b\\c\\d"), 0);
    EXPECT_FALSE(hasKey("Software\\a"));
    EXPECT_TRUE(hasKey("Software"));
}

TEST_F(RegistryChangeTest, TakesBackOnlyTheLevelsThatItMade) {
    registry_.addKey(kRoot, "Software\\a");
    registry_.broken = "Software\\a\\b\\c";
    EXPECT_EQ(createKey("Software\\a\\b\\c"), 0);
    EXPECT_FALSE(hasKey("Software\\a\\b"));
    EXPECT_TRUE(hasKey("Software\\a"));
}

TEST_F(RegistryChangeTest, MakesNothingWhereTheKeyCannotBeLookedAt) {
    registry_.setForbidden("Software\\Secret");
    registry_.addKey(kRoot, "Software\\Secret");
    EXPECT_EQ(createKey("Software\\Secret"), 0);
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangeTest, DeletesAsManyLevelsAsAsked) {
    registry_.addKey(kRoot, "Software\\a\\b\\c");
    EXPECT_EQ(deleteKeys("Software/a/b/c", 2), 2);
    EXPECT_TRUE(hasKey("Software\\a"));
    EXPECT_FALSE(hasKey("Software\\a\\b"));
}

TEST_F(RegistryChangeTest, KeepsAKeyWithAForeignSubkeyAndAllAboveIt) {
    registry_.addKey(kRoot, "Software\\a\\b\\c");
    registry_.addText(kRoot, "Software\\a\\b\\foreign", "n", "data");
    EXPECT_EQ(deleteKeys("Software\\a\\b\\c", 3), 1);
    EXPECT_FALSE(hasKey("Software\\a\\b\\c"));
    EXPECT_NE(registry_.value(kRoot, "Software\\a\\b\\foreign", "n"), nullptr);
}

TEST_F(RegistryChangeTest, DeletesNothingWithoutAsManyLevels) {
    EXPECT_EQ(deleteKeys("Software", 2), 0);
    EXPECT_EQ(deleteKeys("", 1), 0);
    EXPECT_EQ(deleteKeys("\\\\", 1), 0);
    EXPECT_EQ(deleteKeys("Software", 0), 0);
    EXPECT_EQ(deleteKeys("Software", -1), 0);
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangeTest, DeletesAValue) {
    registry_.addText(kRoot, "Software\\a", "n", "data");
    EXPECT_EQ(deleteValue("Software/a", "n"), 0);
    EXPECT_EQ(registry_.value(kRoot, "Software\\a", "n"), nullptr);
    EXPECT_TRUE(hasKey("Software\\a"));
}

TEST_F(RegistryChangeTest, WritesNothingThatTheUndoCouldNotName) {
    const std::string longPath = "Software\\" + std::string(RegistryChange::kPathLimit - 9, 'k');
    EXPECT_EQ(write(longPath, "", "x"), 0);
    registry_.operations.clear();
    EXPECT_EQ(write(longPath + "k", "", "x"), platform::kRegBadArgument);
    EXPECT_EQ(createKey(longPath + "k"), 0);
    for (const char* text : {"a\tb", "a\nb", "a\r", "a "}) {
        EXPECT_EQ(write("Software", "", "x", text), platform::kRegBadArgument);
        EXPECT_EQ(write(text, "", "x"), platform::kRegBadArgument);
        EXPECT_EQ(createKey(text), 0);
    }
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangeTest, KeepsPathAndNameWithinALineOfTheLog) {
    // The line also holds "REGVAL", three separators, the root's name and "Software".
    const std::string name(1023 - 6 - 3 - 18 - 8, 'n');
    EXPECT_EQ(write("Software", "", "x", name), 0);
    EXPECT_EQ(write("Software", "", "x", name + "n"), platform::kRegBadArgument);
    // With "HKEY_LOCAL_MACHINE" and four more bytes of separators "DEFAULT" has room behind a path of 511.
    EXPECT_EQ(write("Software\\" + std::string(RegistryChange::kPathLimit - 9, 'd'), "", "x", ""), 0);
}

}  // namespace
