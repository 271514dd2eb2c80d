#include "engine/changes/change_record.h"

#include <functional>

#include "description/product_description.h"
#include "engine/action_log_format.h"
#include "engine/changes/change_fixture.h"
#include "engine/changes/directory_change.h"
#include "engine/changes/environment_change.h"
#include "engine/changes/file_edit.h"
#include "engine/changes/firewall_change.h"
#include "engine/changes/ini_change.h"
#include "engine/changes/registry_change.h"
#include "engine/changes/shortcut_change.h"
#include "engine/changes/text_lines.h"
#include "platform/system_environment.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class ChangeRecordTest : public ChangeTest {
protected:
    ChangeRecord record_{&writer_};
};

TEST_F(ChangeRecordTest, WritesAtOnce) {
    EXPECT_TRUE(record_.write(ActionLogFormat::kEnvironment, {"CREATE", "X"}));
    EXPECT_EQ(records(), "ENV\tCREATE\tX\r\n");
    EXPECT_EQ(logDisk_.count(Operation::kFlush), 0);
}

TEST_F(ChangeRecordTest, BringsWhatNothingElseHasToTheDisk) {
    EXPECT_TRUE(record_.keep(ActionLogFormat::kEnvironment, {"REPLACE", "X", "former"}));
    EXPECT_EQ(records(), "ENV\tREPLACE\tX\tformer\r\n");
    EXPECT_EQ(logDisk_.count(Operation::kFlush), 1);
}

TEST_F(ChangeRecordTest, WithdrawsAllThatItWrote) {
    writer_.writeFile(false, "/earlier");
    ChangeRecord record(&writer_);
    EXPECT_TRUE(record.write(ActionLogFormat::kRegistryKey, {"1", "a", "b"}));
    EXPECT_TRUE(record.write(ActionLogFormat::kRegistryValue, {"a", "b", "c"}));
    record.withdraw();
    EXPECT_EQ(records(), "FILE\tCREATE\t/earlier\r\n");
}

TEST_F(ChangeRecordTest, LeavesNothingOfAChangeThatCannotBeRecordedWhole) {
    EXPECT_TRUE(record_.write(ActionLogFormat::kRegistryKey, {"1", "a", "b"}));
    logDisk_.setFreeSpace(3);
    EXPECT_FALSE(record_.write(ActionLogFormat::kRegistryValue, {"a", "b", "c"}));
    EXPECT_EQ(records(), "");
}

TEST_F(ChangeRecordTest, LeavesNothingThatDoesNotReachTheDisk) {
    logDisk_.failAt(Operation::kFlush, "/tmp/log", 1);
    EXPECT_FALSE(record_.keep(ActionLogFormat::kEnvironment, {"REPLACE", "X", "former"}));
    EXPECT_EQ(records(), "");
}

TEST(ChangeRecordWithoutLogTest, RecordsNothing) {
    ChangeRecord record(nullptr);
    EXPECT_TRUE(record.write(ActionLogFormat::kEnvironment, {"CREATE", "X"}));
    EXPECT_TRUE(record.keep(ActionLogFormat::kEnvironment, {"CREATE", "X"}));
    record.withdraw();
}

using platform::RegistryRoot;

// A desktop that looks at the log before it makes a link.
class WatchingShell : public MemoryShellObjects {
public:
    std::function<void()> watcher;

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override {
        if (watcher) {
            watcher();
        }
        return MemoryShellObjects::createLink(linkPath, link);
    }
};

// One change of each kind but files.
class EachKindOfChangeTest : public ChangeTest {
protected:
    EachKindOfChangeTest() {
        machine_.files.addFile("/d/a.ini", textOf({"[s]", "k=v"}));
        machine_.files.addFile("/d/list", textOf({"anchor"}));
        machine_.files.addFile("/d/script", "1\nanchor\n1\nadded\n");
        machine_.registry.addText(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "PATH",
                                  "/bin");
        machine_.registry.operations.clear();
        watchWith([this] { look(); });
    }

    void watchWith(const std::function<void()>& watcher) {
        shell_.watcher = watcher;
        machine_.firewall.watcher = watcher;
        machine_.registry.watcher = watcher;
    }

    // The record is in the log when the machine is asked to change something.
    void look() {
        ++looks_;
        EXPECT_NE(records().find(record_), std::string::npos) << records();
    }
    void lookBefore(Operation operation, const std::string& path) {
        machine_.files.runBefore(operation, path, 1, [this] { look(); });
    }
    void expectRecordedBefore(const std::string& record, const std::function<bool()>& change) {
        record_ = record;
        looks_ = 0;
        EXPECT_TRUE(change());
        EXPECT_GT(looks_, 0);
        EXPECT_TRUE(records().ends_with(record + "\r\n")) << records();
    }
    // Without room for its record nothing happens, and that is said.
    void expectNotMadeWithoutRecord(const std::function<bool()>& change) {
        const auto files = machine_.files.everything();
        const auto registry = machine_.registry.everything();
        logDisk_.setFreeSpace(4);
        watchWith([] { ADD_FAILURE(); });
        EXPECT_FALSE(change());
        EXPECT_EQ(machine_.files.everything(), files);
        EXPECT_EQ(machine_.registry.everything(), registry);
        EXPECT_EQ(records(), "");
    }
    int unrecordedReasons() {
        int count = 0;
        for (const std::string& reason : reasons()) {
            count += reason.find(kUnrecordedReason) != std::string::npos ? 1 : 0;
        }
        return count;
    }

    // The description of all, with these children of the groups of which it has more than one.
    void describeAll(const std::string& firewall, const std::string& registry) {
        describe(
            "<Environment><Append VarName='PATH'>/x</Append></Environment>"
            "<IniFiles><Add FileName='/d/a.ini' Section='s' Key='k'>w</Add></IniFiles>"
            "<ModifyFiles><File Command='AddAfter' Path='/d/list'>/d/script</File></ModifyFiles>"
            "<Shortcuts><Add Type='File' Dest='/d' Target='t'>x.lnk</Add></Shortcuts>"
            "<Firewall>" +
            firewall + "</Firewall><Registry>" + registry + "</Registry>");
    }
    template <typename Kind>
    bool apply() {
        return Kind(context_).apply();
    }
    bool makeShortcut() {
        const ChangeContext context = {
            {machine_.files, machine_.registry, machine_.processes, machine_.environment, machine_.console,
             machine_.events, shell_, machine_.firewall},
            system_,
            tags_,
            writer_,
            report_,
            console_};
        return ShortcutChange(context, product_).apply();
    }
    bool changeRegistry() {
        return RegistryChange(context_).applyElement(tags_.firstOf("Registry"), product_);
    }
    bool makeDirectory() { return DirectoryChange(context_).create("/d/e/f/"); }

    static constexpr char kPort[] = "<Port Port='80'>Web</Port>";
    static constexpr char kApplication[] = "<Application Target='/d/a'>A</Application>";
    static constexpr char kValue[] = "<AddValue Place='HKEY_USERS' Path='a/b' Value='v'>x</AddValue>";
    static constexpr char kKey[] = "<AddKey Place='HKEY_USERS' Path='c/d'/>";

    ProductDescription product_{document_, expressions_};
    WatchingShell shell_;
    std::string record_;
    int looks_ = 0;
};

TEST_F(EachKindOfChangeTest, IsRecordedBeforeItIsMade) {
    describeAll(kPort, kValue);
    expectRecordedBefore("ENV\tADD\tPATH\t/x", [this] { return apply<EnvironmentChange>(); });
    lookBefore(Operation::kReplaceFile, "/d/.tandrel-1.tmp");
    expectRecordedBefore("INI\tREPLACE\t/d/a.ini\ts\tk\tv", [this] { return apply<IniChange>(); });
    lookBefore(Operation::kReplaceFile, "/d/.tandrel-1.tmp");
    expectRecordedBefore("MODIFYFILE\tADDAFTER\t/d/list\t/d/script", [this] { return apply<FileEdit>(); });
    expectRecordedBefore("SHORTCUT\tCREATE\t\\d\\x.lnk", [this] { return makeShortcut(); });
    expectRecordedBefore("FIREWALL\tPORT\t80\tTCP;UDP\tWeb", [this] { return apply<FirewallChange>(); });
    expectRecordedBefore("REGKEY\t2\tHKEY_USERS\ta\\b\r\nREGVAL\tHKEY_USERS\ta\\b\tv",
                         [this] { return changeRegistry(); });
    lookBefore(Operation::kCreateDirectory, "/d/e");
    expectRecordedBefore("DIR\t2\t/d/e/f/", [this] { return makeDirectory(); });
}

TEST_F(EachKindOfChangeTest, IsRecordedBeforeItIsMadeAlsoForApplicationsAndKeys) {
    describeAll(kApplication, kKey);
    expectRecordedBefore("FIREWALL\tAPP\t\\d\\a", [this] { return apply<FirewallChange>(); });
    expectRecordedBefore("REGKEY\t2\tHKEY_USERS\tc\\d", [this] { return changeRegistry(); });
}

TEST_F(EachKindOfChangeTest, IsNotMadeWithoutItsRecord) {
    describeAll(std::string(kPort) + kApplication, std::string(kValue) + kKey);
    expectNotMadeWithoutRecord([this] { return apply<EnvironmentChange>(); });
    expectNotMadeWithoutRecord([this] { return apply<IniChange>(); });
    expectNotMadeWithoutRecord([this] { return apply<FileEdit>(); });
    expectNotMadeWithoutRecord([this] { return apply<FirewallChange>(); });
    expectNotMadeWithoutRecord([this] { return changeRegistry(); });
    expectNotMadeWithoutRecord([this] { return makeDirectory(); });
    EXPECT_EQ(unrecordedReasons(), 8);
    expectNotMadeWithoutRecord([this] { return makeShortcut(); });
    EXPECT_EQ(ui_.countOf("addFileLine(\"FAILED to create  shortcut "), 1);
}

// The only copy of what they replace is in the record.
TEST_F(EachKindOfChangeTest, IsFlushedFirstWhereItReplacesAValue) {
    watchWith({});
    describe(
        "<Environment><Replace VarName='PATH'>/x</Replace><Replace VarName='NEW'>/x</Replace></Environment>"
        "<IniFiles><Add FileName='/d/a.ini' Section='s' Key='k'>w</Add></IniFiles>");
    EXPECT_TRUE(apply<EnvironmentChange>());
    EXPECT_EQ(logDisk_.count(Operation::kFlush), 1);
    EXPECT_TRUE(apply<IniChange>());
    EXPECT_EQ(logDisk_.count(Operation::kFlush), 2);
    const auto setPath = [this](const char* value) {
        machine_.registry.addText(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "PATH",
                                  value);
    };
    setPath("/z");
    logDisk_.failAt(Operation::kFlush, "/tmp/log", 1);
    EXPECT_FALSE(apply<EnvironmentChange>());
    EXPECT_EQ(
        machine_.registry.value(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "PATH")->data,
        "/z");
}

}  // namespace
