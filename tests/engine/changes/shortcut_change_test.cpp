#include "engine/changes/shortcut_change.h"

#include <gmock/gmock.h>

#include "change_fixture.h"
#include "description/product_description.h"
#include "engine/action_log_format.h"
#include "fakes/temporary_directory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kProduct[] =
    "<ProductDesc><Fullname>Demo 1</Fullname></ProductDesc><Installation><Uninstall>"
    "<UninstallCmd>C:\\Program Files\\Demo\\installer.exe</UninstallCmd>"
    "<InstallLogFile>C:\\Demo\\in.log</InstallLogFile></Uninstall></Installation>";

class ShortcutChangeTest : public ChangeTest {
protected:
    static ShortcutRequest request(ShortcutType type) {
        return {type,       "C:\\Desktop\\Demo.lnk", "C:\\Demo\\demo.exe", "A demo", "-a \"b c\"",
                "C:\\Demo", "C:\\Demo\\demo.ico"};
    }
    std::optional<std::string> add(const ShortcutRequest& shortcut) {
        return ShortcutChange::add(machine_.bundle(), product_, report_, console_, shortcut);
    }
    bool remove(std::string_view fields) { return ShortcutChange::remove(machine_.files, report_, fields); }
    const platform::LinkDescription& link() { return machine_.shell.links["C:\\Desktop\\Demo.lnk"]; }
    // Nothing is made, and the failure is shown and collected.
    void expectRefused(const ShortcutRequest& shortcut) {
        EXPECT_EQ(add(shortcut), std::nullopt);
        const std::string line = "FAILED to create  shortcut " + writtenPath(shortcut.linkPath);
        expectLines({line});
        EXPECT_EQ(errors_, ErrorList{line});
        EXPECT_TRUE(machine_.shell.links.empty());
        EXPECT_TRUE(machine_.shell.urlLinks.empty());
        errors_.clear();
    }

    ProductDescription product_{document_, expressions_};
    ShortcutChange change_{context_, product_};
};

TEST_F(ShortcutChangeTest, MakesAFileShortcutWithAllThatWasAskedFor) {
    EXPECT_EQ(add(request(ShortcutType::kFile)), "CREATE\tC:\\Desktop\\Demo.lnk");
    ASSERT_EQ(machine_.shell.links.count("C:\\Desktop\\Demo.lnk"), 1U);
    EXPECT_EQ(link().target, "C:\\Demo\\demo.exe");
    EXPECT_EQ(link().description, "A demo");
    EXPECT_EQ(link().arguments, "-a \"b c\"");
    EXPECT_EQ(link().workDirectory, "C:\\Demo");
    EXPECT_EQ(link().iconPath, "C:\\Demo\\demo.ico");
    expectLines({"Create  shortcut " + writtenPath("C:\\Desktop\\Demo.lnk")});
    EXPECT_TRUE(errors_.empty());
}

TEST_F(ShortcutChangeTest, TakesOnlyTheTargetForAUrl) {
    ShortcutRequest shortcut = request(ShortcutType::kUrl);
    shortcut.target = "http://example.com";
    EXPECT_EQ(add(shortcut), "CREATE\tC:\\Desktop\\Demo.lnk");
    EXPECT_TRUE(machine_.shell.links.empty());
    EXPECT_EQ(machine_.shell.urlLinks["C:\\Desktop\\Demo.lnk"], "http://example.com");
}

TEST_F(ShortcutChangeTest, StartsTheUnquotedUninstallCommandOnTheLog) {
    describe(kProduct);
    EXPECT_EQ(add(request(ShortcutType::kUninstall)), "CREATE\tC:\\Desktop\\Demo.lnk");
    EXPECT_EQ(link().target, writtenPath("C:\\Program Files\\Demo\\installer.exe"));
    EXPECT_EQ(link().arguments,
              "-uninstall=\"" + writtenPath("C:\\Demo\\in.log") + "\" -uninstallApp=\"Demo 1\"");
    EXPECT_EQ(link().description, "A demo");
    EXPECT_EQ(link().workDirectory, "");
    EXPECT_EQ(link().iconPath, "");
}

TEST_F(ShortcutChangeTest, RefusesAnUninstallShortcutWithoutAnUninstallCommand) {
    describe("");
    expectRefused(request(ShortcutType::kUninstall));
}

TEST_F(ShortcutChangeTest, MakesASymlink) {
    EXPECT_EQ(add(request(ShortcutType::kSymlink)), "CREATE\tC:\\Desktop\\Demo.lnk");
    EXPECT_EQ(machine_.shell.symlinks["C:\\Desktop\\Demo.lnk"], "C:\\Demo\\demo.exe");
    EXPECT_TRUE(machine_.shell.links.empty());
    expectLines({"Create  shortcut " + writtenPath("C:\\Desktop\\Demo.lnk")});
}

TEST_F(ShortcutChangeTest, MakesASymlinkToAPlaceThatCountsFromItsOwn) {
    describe("<Shortcuts><Add Type='Symlink' Dest='/lib' Target='../bin//run'>run</Add></Shortcuts>");
    EXPECT_TRUE(change_.apply());
    EXPECT_EQ(machine_.shell.symlinks["\\lib\\run"], "..\\bin\\run");
    EXPECT_EQ(records(), "DIR\t1\t\\lib\\\r\nSHORTCUT\tCREATE\t\\lib\\run\r\n");
}

TEST_F(ShortcutChangeTest, RefusesAnUnknownType) {
    expectRefused(request(static_cast<ShortcutType>(0)));
    expectRefused(request(static_cast<ShortcutType>(5)));
}

TEST_F(ShortcutChangeTest, ReportsAFailureOfTheShell) {
    describe(kProduct);
    machine_.shell.linkError = 5;
    expectRefused(request(ShortcutType::kFile));
    expectRefused(request(ShortcutType::kUrl));
    expectRefused(request(ShortcutType::kUninstall));
    expectRefused(request(ShortcutType::kSymlink));
}

TEST_F(ShortcutChangeTest, WorksWithoutAFrontEnd) {
    Report silent(nullptr, &errors_);
    const auto addSilently = [&](ShortcutType type) {
        return ShortcutChange::add(machine_.bundle(), product_, silent, console_, request(type));
    };
    EXPECT_TRUE(addSilently(ShortcutType::kFile));
    machine_.shell.linkError = 5;
    EXPECT_FALSE(addSilently(ShortcutType::kSymlink));
    EXPECT_EQ(errors_.size(), 1U);
    EXPECT_FALSE(ShortcutChange::remove(machine_.files, silent, "CREATE\t/none"));
}

TEST_F(ShortcutChangeTest, RefusesAPathThatTheLogCanNotHold) {
    for (const std::string path : {"", "/a\tb.lnk", "/a\nb.lnk", "/a\rb.lnk", "/a.lnk "}) {
        ShortcutRequest shortcut = request(ShortcutType::kFile);
        shortcut.linkPath = path;
        expectRefused(shortcut);
    }
}

TEST_F(ShortcutChangeTest, TakesAPathThatFillsTheLineOfTheLog) {
    const std::size_t room = ActionLogFormat::kLineLimit - std::string("SHORTCUT\tCREATE\t").size();
    ShortcutRequest shortcut = request(ShortcutType::kFile);
    shortcut.linkPath = "/" + std::string(room, 'x');
    expectRefused(shortcut);
    shortcut.linkPath.pop_back();
    EXPECT_EQ(add(shortcut), "CREATE\t" + shortcut.linkPath);
}

TEST_F(ShortcutChangeTest, MakesTheShortcutsOfTheDescriptionAndRecordsThem) {
    variables_.set("M", "/menu/Demo");
    describe(std::string(kProduct) +
             "<Shortcuts><Add Type='File' Dest='[M]' Target='/a//b.exe' Arguments='a//b' "
             "StartPath='/a//' IconPath='/a//i.ico' Description='D'>Start.lnk</Add>"
             "<Add Type='URL' Dest='[M]/' Target='http://x//y'>Web.url</Add>"
             "<Add Type='Uninstall' Dest='[M]'>Remove.lnk</Add></Shortcuts>");
    EXPECT_TRUE(change_.apply());
    const platform::LinkDescription& start = machine_.shell.links["\\menu\\Demo\\Start.lnk"];
    EXPECT_EQ(start.target, "\\a\\b.exe");
    EXPECT_EQ(start.description, "D");
    EXPECT_EQ(start.arguments, "a//b");
    EXPECT_EQ(start.workDirectory, "\\a\\");
    EXPECT_EQ(start.iconPath, "\\a\\i.ico");
    EXPECT_EQ(machine_.shell.urlLinks["\\menu\\Demo\\Web.url"], "http://x//y");
    EXPECT_EQ(machine_.shell.links["\\menu\\Demo\\Remove.lnk"].description,
              "Tandrel Group installer shortcut");
    EXPECT_EQ(records(),
              "DIR\t2\t\\menu\\Demo\\\r\nSHORTCUT\tCREATE\t\\menu\\Demo\\Start.lnk\r\n"
              "SHORTCUT\tCREATE\t\\menu\\Demo\\Web.url\r\nSHORTCUT\tCREATE\t\\menu\\Demo\\Remove.lnk\r\n");
    EXPECT_TRUE(machine_.files.hasDirectory("/menu/Demo"));
}

TEST_F(ShortcutChangeTest, SkipsWhatIsIncompleteUnknownOrNotWanted) {
    describe(
        "<Shortcuts><Add Dest='/m' Target='t'>x</Add><Add Type='file' Dest='/m' Target='t'>x</Add>"
        "<Add Type='File' Target='t'>x</Add><Add Type='File' Dest='/m'>x</Add>"
        "<Remove Type='File' Dest='/m' Target='t'>x</Remove>"
        "<Add Type='File' Dest='/m' Target='t'></Add><Add Type='URL' Dest='/m' Target='t'/>"
        "<Add Type='File' Dest='/m' Target='t' Condition='1==2'>x</Add></Shortcuts>");
    EXPECT_TRUE(change_.apply());
    EXPECT_TRUE(machine_.shell.links.empty());
    EXPECT_FALSE(machine_.files.hasDirectory("/m"));
    EXPECT_EQ(records(), "");
}

TEST_F(ShortcutChangeTest, EndsAGroupAtAFailureAndGoesOnWithTheNext) {
    machine_.files.addDirectory("/tmp");
    describe(
        "<Shortcuts><Add Type='Uninstall' Dest='/tmp' Target='t' Arguments='a'>x</Add>"
        "<Add Type='File' Dest='/tmp' Target='t'>y</Add></Shortcuts>"
        "<Shortcuts><Add Type='File' Dest='/tmp' Target='t'>z</Add></Shortcuts>");
    EXPECT_FALSE(change_.apply());
    EXPECT_EQ(machine_.shell.links.size(), 1U);
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)",
                                          "ERROR: Creating shortcut: \"\\tmp\\x\" to \"t\" and args\"a\""));
    EXPECT_EQ(records(), "SHORTCUT\tCREATE\t\\tmp\\z\r\n");
}

TEST_F(ShortcutChangeTest, EndsAGroupWhoseDirectoryCannotBeMade) {
    machine_.files.failAt(MemoryFileSystem::Operation::kCreateDirectory, "/m/n", 1);
    describe(
        "<Shortcuts><Add Type='File' Dest='/m/n' Target='t'>x</Add>"
        "<Add Type='File' Dest='/tmp' Target='t'>y</Add></Shortcuts>");
    EXPECT_FALSE(change_.apply());
    EXPECT_TRUE(machine_.shell.links.empty());
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Creating directory: \"\\m\\n\\\""));
}

TEST_F(ShortcutChangeTest, RemovesTheFileOfTheRecord) {
    machine_.files.addFile("C:\\Desktop\\Demo.lnk", "x");
    EXPECT_TRUE(change_.undo({"SHORTCUT", "CREATE\tC:\\Desktop\\Demo.lnk"}));
    EXPECT_FALSE(machine_.files.hasFile("C:\\Desktop\\Demo.lnk"));
    expectLines({"Remove  shortcut " + writtenPath("C:\\Desktop\\Demo.lnk")});
}

TEST_F(ShortcutChangeTest, ReportsAShortcutThatHasGoneAndFailsNothing) {
    machine_.files.addDirectory("/d");
    for (const std::string path : {"/d/none.lnk", "/none/a.lnk", ""}) {
        EXPECT_TRUE(change_.undo({"SHORTCUT", "CREATE\t" + path})) << path;
        expectLines({"FAILED to remove  shortcut " + path});
    }
}

TEST_F(ShortcutChangeTest, FailsForAShortcutThatStaysAndSaysWhy) {
    machine_.files.addFile("/d/a.lnk", "x");
    machine_.files.failAt(MemoryFileSystem::Operation::kRemoveFile, "/d/a.lnk", 1);
    EXPECT_FALSE(change_.undo({"SHORTCUT", "CREATE\t/d/a.lnk"}));
    ASSERT_EQ(ui_.calls.size(), 2U);
    EXPECT_EQ(ui_.calls[0], "addFileLine(\"FAILED to remove  shortcut /d/a.lnk\", 0)");
    EXPECT_TRUE(ui_.calls[1].starts_with("addMessage(\"/d/a.lnk: "));
    machine_.files.failAt(MemoryFileSystem::Operation::kRemoveFile, "/d/a.lnk", 1);
    EXPECT_FALSE(remove("CREATE\t/d/a.lnk"));
    EXPECT_TRUE(machine_.files.hasFile("/d/a.lnk"));
    EXPECT_TRUE(errors_.empty());
}

TEST_F(ShortcutChangeTest, LeavesADirectoryAndTheTargetOfALinkAlone) {
    machine_.files.addDirectory("/d/place");
    machine_.files.addFile("/d/target", "x");
    machine_.files.addLink("/d/link", "/d/target");
    EXPECT_FALSE(remove("CREATE\t/d/place"));
    EXPECT_TRUE(machine_.files.hasDirectory("/d/place"));
    EXPECT_TRUE(remove("CREATE\t/d/link"));
    EXPECT_TRUE(machine_.files.hasFile("/d/target"));
    EXPECT_FALSE(machine_.files.exists("/d/link"));
}

TEST_F(ShortcutChangeTest, IgnoresRecordsOfAnotherKind) {
    machine_.files.addFile("/a", "x");
    machine_.files.clearOperations();
    for (const std::string fields : {"", "NONE", "OVER\t/a", "create\t/a", "CREATED\t/a", "\tCREATE\t/a"}) {
        EXPECT_TRUE(remove(fields)) << fields;
    }
    EXPECT_FALSE(remove("CREATE"));  // of the right kind, but without its path
    EXPECT_TRUE(machine_.files.hasFile("/a"));
    EXPECT_THAT(machine_.files.operations(), IsEmpty());
}

TEST_F(ShortcutChangeTest, TakesAFieldAfterThePathAsPartOfIt) {
    machine_.files.addFile("/a", "x");
    EXPECT_FALSE(remove("CREATE\t/a\t/b"));
    EXPECT_TRUE(machine_.files.hasFile("/a"));
}

// The same with the desktop and the disk of this machine.
TEST_F(ShortcutChangeTest, MakesAndRemovesRealShortcuts) {
    const TemporaryDirectory directory;
    const platform::Platform machine = platform::systemPlatform();
    describe(kProduct);
    for (const ShortcutType type : {ShortcutType::kFile, ShortcutType::kUrl, ShortcutType::kUninstall}) {
        ShortcutRequest shortcut = request(type);
        shortcut.linkPath = directory.file("Demo link.lnk");
        const auto fields = ShortcutChange::add(machine, product_, report_, console_, shortcut);
        ASSERT_TRUE(fields);
        EXPECT_GT(platform::systemFileSystem().fileSize(shortcut.linkPath), 0);
        EXPECT_TRUE(ShortcutChange::remove(machine.files, report_, *fields));
        EXPECT_FALSE(testFileExists(shortcut.linkPath));
        EXPECT_FALSE(ShortcutChange::remove(machine.files, report_, *fields));
    }
    EXPECT_FALSE(ShortcutChange::remove(machine.files, report_, "CREATE\t" + directory.path()));
    EXPECT_TRUE(platform::systemFileSystem().isDirectory(directory.path()));
}

}  // namespace
