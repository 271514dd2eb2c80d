#include "wini/shortcuts.h"

#include <gtest/gtest.h>

#include "engine/action_log_format.h"
#include "fakes/fake_console.h"
#include "fakes/fake_engine.h"
#include "fakes/fake_shell_objects.h"
#include "fakes/memory_file_system.h"
#include "fakes/memory_registry.h"
#include "fakes/recording_ui.h"
#include "fakes/temporary_directory.h"
#include "wini/application_registration.h"

namespace {

class Product : public FakeEngine {
public:
    std::string command = "C:\\Program Files\\Demo\\installer.exe";
    int getUninstallCmd(char* buffer, int size) override { return tell(command, buffer, size); }
    int getInstallLogFile(char* buffer, int size) override { return tell("C:\\Demo\\in.log", buffer, size); }
    int getFullName(char* buffer, int size) override { return tell("Demo 1", buffer, size); }

private:
    static int tell(const std::string& text, char* buffer, int size) {
        OUtils::copyText(buffer, text.c_str(), size);
        return text.empty() ? -1 : 0;
    }
};

class ShortcutsTest : public testing::Test {
protected:
    static ShortcutRequest request(ShortcutType type) {
        return {type,       "C:\\Desktop\\Demo.lnk", "C:\\Demo\\demo.exe", "A demo", "-a \"b c\"",
                "C:\\Demo", "C:\\Demo\\demo.ico"};
    }
    bool add(const ShortcutRequest& shortcut) { return shortcuts_.addShortcut(shortcut, undo_, &ui_); }
    // Nothing is made, and all that has to be told is told.
    void expectRefused(const ShortcutRequest& shortcut) {
        undo_ = "left over";
        EXPECT_FALSE(add(shortcut));
        EXPECT_EQ(undo_, "");
        const std::string line = "FAILED to create  shortcut " + shortcut.linkPath;
        EXPECT_EQ(ui_.take(), std::vector<std::string>{"addFileLine(\"" + line + "\", 0)"});
        EXPECT_EQ(errors_, ErrorList{line});
        EXPECT_TRUE(shell_.links.empty());
        EXPECT_TRUE(shell_.urlLinks.empty());
        errors_.clear();
    }

    FakeShellObjects shell_;
    MemoryFileSystem files_;
    MemoryRegistry registry_;
    Product product_;
    FakeConsole log_;
    ApplicationRegistration registration_{registry_, product_, log_};
    ErrorList errors_;
    RecordingUI ui_;
    Shortcuts shortcuts_{shell_, files_, registration_, errors_};
    std::string undo_;
};

TEST_F(ShortcutsTest, AFileShortcutHasAllThatWasAskedFor) {
    EXPECT_TRUE(add(request(ShortcutType::kFile)));
    ASSERT_EQ(shell_.links.count("C:\\Desktop\\Demo.lnk"), 1U);
    const platform::LinkDescription& link = shell_.links["C:\\Desktop\\Demo.lnk"];
    EXPECT_EQ(link.target, "C:\\Demo\\demo.exe");
    EXPECT_EQ(link.description, "A demo");
    EXPECT_EQ(link.arguments, "-a \"b c\"");
    EXPECT_EQ(link.workDirectory, "C:\\Demo");
    EXPECT_EQ(link.iconPath, "C:\\Demo\\demo.ico");
    EXPECT_EQ(undo_, "CREATE\tC:\\Desktop\\Demo.lnk");
    EXPECT_EQ(ui_.take(),
              std::vector<std::string>{"addFileLine(\"Create  shortcut C:\\Desktop\\Demo.lnk\", 0)"});
    EXPECT_TRUE(errors_.empty());
}

TEST_F(ShortcutsTest, AnUrlShortcutIgnoresAllButItsTarget) {
    ShortcutRequest shortcut = request(ShortcutType::kUrl);
    shortcut.target = "http://example.com";
    EXPECT_TRUE(add(shortcut));
    EXPECT_TRUE(shell_.links.empty());
    EXPECT_EQ(shell_.urlLinks["C:\\Desktop\\Demo.lnk"], "http://example.com");
    EXPECT_EQ(undo_, "CREATE\tC:\\Desktop\\Demo.lnk");
}

TEST_F(ShortcutsTest, TheUninstallShortcutStartsTheUnquotedCommandOnTheLog) {
    EXPECT_TRUE(add(request(ShortcutType::kUninstall)));
    const platform::LinkDescription& link = shell_.links["C:\\Desktop\\Demo.lnk"];
    EXPECT_EQ(link.target, "C:\\Program Files\\Demo\\installer.exe");
    EXPECT_EQ(link.arguments, "-uninstall=\"C:\\Demo\\in.log\" -uninstallApp=\"Demo 1\"");
    EXPECT_EQ(link.description, "A demo");
    EXPECT_EQ(link.workDirectory, "");
    EXPECT_EQ(link.iconPath, "");
    EXPECT_EQ(undo_, "CREATE\tC:\\Desktop\\Demo.lnk");
}

TEST_F(ShortcutsTest, AnUninstallShortcutNeedsAnUninstallCommand) {
    product_.command.clear();
    expectRefused(request(ShortcutType::kUninstall));
}

TEST_F(ShortcutsTest, ASymlinkFails) {
    expectRefused(request(ShortcutType::kSymlink));
}

TEST_F(ShortcutsTest, AnUnknownTypeFails) {
    expectRefused(request(static_cast<ShortcutType>(0)));
    expectRefused(request(static_cast<ShortcutType>(5)));
}

TEST_F(ShortcutsTest, AFailureOfTheShellIsTold) {
    shell_.linkError = 5;
    expectRefused(request(ShortcutType::kFile));
    expectRefused(request(ShortcutType::kUrl));
    expectRefused(request(ShortcutType::kUninstall));
}

TEST_F(ShortcutsTest, WorksWithoutAFrontEnd) {
    EXPECT_TRUE(shortcuts_.addShortcut(request(ShortcutType::kFile), undo_, nullptr));
    EXPECT_FALSE(shortcuts_.addShortcut(request(ShortcutType::kSymlink), undo_, nullptr));
    EXPECT_EQ(errors_.size(), 1U);
    EXPECT_FALSE(shortcuts_.removeShortcut("CREATE\t/none", nullptr));
}

TEST_F(ShortcutsTest, APathThatTheLogCanNotHoldIsRefused) {
    for (const std::string path : {"", "/a\tb.lnk", "/a\nb.lnk", "/a\rb.lnk", "/a.lnk "}) {
        ShortcutRequest shortcut = request(ShortcutType::kFile);
        shortcut.linkPath = path;
        expectRefused(shortcut);
    }
}

TEST_F(ShortcutsTest, TheLongestPathFillsTheLineOfTheLog) {
    const std::size_t room = ActionLogFormat::kLineLimit - std::string("SHORTCUT\tCREATE\t").size();
    ShortcutRequest shortcut = request(ShortcutType::kFile);
    shortcut.linkPath = "/" + std::string(room, 'x');
    expectRefused(shortcut);
    shortcut.linkPath.pop_back();
    EXPECT_TRUE(add(shortcut));
    EXPECT_EQ(undo_, "CREATE\t" + shortcut.linkPath);
}

TEST_F(ShortcutsTest, RemovesTheFileOfTheRecord) {
    files_.addFile("C:\\Desktop\\Demo.lnk", "x");
    EXPECT_TRUE(shortcuts_.removeShortcut("CREATE\tC:\\Desktop\\Demo.lnk", &ui_));
    EXPECT_FALSE(files_.hasFile("C:\\Desktop\\Demo.lnk"));
    EXPECT_EQ(ui_.take(),
              std::vector<std::string>{"addFileLine(\"Remove  shortcut C:\\Desktop\\Demo.lnk\", 0)"});
}

TEST_F(ShortcutsTest, TellsAShortcutThatCanNotBeRemoved) {
    files_.addFile("/d/a.lnk", "x");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/d/a.lnk", 1);
    for (const std::string path : {"/d/a.lnk", "/d/none.lnk", "/none/a.lnk", ""}) {
        EXPECT_FALSE(shortcuts_.removeShortcut(("CREATE\t" + path).c_str(), &ui_)) << path;
        EXPECT_EQ(ui_.take(),
                  std::vector<std::string>{"addFileLine(\"FAILED to remove  shortcut " + path + "\", 0)"});
    }
    EXPECT_TRUE(files_.hasFile("/d/a.lnk"));
    EXPECT_TRUE(errors_.empty());
}

TEST_F(ShortcutsTest, LeavesADirectoryAndTheTargetOfALinkAlone) {
    files_.addDirectory("/d/place");
    files_.addFile("/d/target", "x");
    files_.addLink("/d/link", "/d/target");
    EXPECT_FALSE(shortcuts_.removeShortcut("CREATE\t/d/place", nullptr));
    EXPECT_TRUE(files_.hasDirectory("/d/place"));
    EXPECT_TRUE(shortcuts_.removeShortcut("CREATE\t/d/link", nullptr));
    EXPECT_TRUE(files_.hasFile("/d/target"));
    EXPECT_FALSE(files_.exists("/d/link"));
}

TEST_F(ShortcutsTest, IgnoresRecordsOfAnotherKind) {
    files_.addFile("/a", "x");
    files_.clearOperations();
    for (const char* text : {"", "NONE", "OVER\t/a", "create\t/a", "CREATED\t/a", "\tCREATE\t/a", "CREATE"}) {
        const bool none = std::string(text) == "CREATE";  // of the right kind, but without its path
        EXPECT_EQ(shortcuts_.removeShortcut(text, nullptr), !none) << text;
    }
    EXPECT_TRUE(shortcuts_.removeShortcut(nullptr, nullptr));
    EXPECT_TRUE(files_.hasFile("/a"));
    EXPECT_TRUE(files_.operations().empty());
}

TEST_F(ShortcutsTest, AFieldBehindThePathNamesNoFile) {
    files_.addFile("/a", "x");
    EXPECT_FALSE(shortcuts_.removeShortcut("CREATE\t/a\t/b", nullptr));
    EXPECT_TRUE(files_.hasFile("/a"));
}

// The same with the desktop and the disk of this machine.
TEST_F(ShortcutsTest, RealShortcutsComeAndGo) {
    const TemporaryDirectory directory;
    Shortcuts shortcuts(platform::systemShellObjects(), platform::systemFileSystem(), registration_, errors_);
    for (const ShortcutType type : {ShortcutType::kFile, ShortcutType::kUrl, ShortcutType::kUninstall}) {
        ShortcutRequest shortcut = request(type);
        shortcut.linkPath = directory.file("Demo link.lnk");
        ASSERT_TRUE(shortcuts.addShortcut(shortcut, undo_, nullptr));
        EXPECT_GT(platform::systemFileSystem().fileSize(shortcut.linkPath.c_str()), 0);
        EXPECT_TRUE(shortcuts.removeShortcut(undo_.c_str(), nullptr));
        EXPECT_FALSE(testFileExists(shortcut.linkPath));
        EXPECT_FALSE(shortcuts.removeShortcut(undo_.c_str(), nullptr));
    }
    EXPECT_FALSE(shortcuts.removeShortcut(("CREATE\t" + directory.path()).c_str(), nullptr));
    EXPECT_TRUE(platform::systemFileSystem().isDirectory(directory.path().c_str()));
}

}  // namespace
