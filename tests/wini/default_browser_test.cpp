#include "wini/default_browser.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_platform.h"

namespace {

constexpr char kUrl[] = "http://example.com/%1?q=%1";

class DefaultBrowserTest : public testing::Test {
protected:
    void setClass(const std::string& pageClass) {
        machine_.registry.addText(platform::RegistryRoot::kClassesRoot, ".htm", "", pageClass);
    }
    void setCommand(const std::string& command) {
        setClass("page");
        machine_.registry.addText(platform::RegistryRoot::kClassesRoot, "page\\shell\\open\\command", "",
                                  command);
    }
    int open(std::string_view url = kUrl) { return openInDefaultBrowser(machine_.bundle(), url); }
    void expectStarted(const std::string& commandLine) {
        EXPECT_EQ(open(), 0);
        ASSERT_EQ(machine_.processes.started.size(), 1U);
        EXPECT_EQ(machine_.processes.started[0].commandLine, commandLine);
        EXPECT_EQ(machine_.processes.started[0].workDirectory, "");
        EXPECT_TRUE(machine_.shell.opened.empty());
    }
    void expectHandedToTheDesktop() {
        EXPECT_EQ(open(), 0);
        EXPECT_TRUE(machine_.processes.started.empty());
        EXPECT_EQ(machine_.shell.opened, std::vector<std::string>{kUrl});
    }

    MemoryPlatform machine_;
};

TEST_F(DefaultBrowserTest, PutsTheUrlInItsPlace) {
    setCommand("\"C:\\b.exe\" -u \"%1\" -x");
    expectStarted("\"C:\\b.exe\" -u \"http://example.com/%1?q=%1\" -x");
}

TEST_F(DefaultBrowserTest, PutsTheUrlInEachPlace) {
    setCommand("b %1 -t%1");
    expectStarted("b http://example.com/%1?q=%1 -thttp://example.com/%1?q=%1");
}

TEST_F(DefaultBrowserTest, AppendsTheUrlToACommandWithoutAPlace) {
    setCommand("\"C:\\b.exe\" -open");
    expectStarted("\"C:\\b.exe\" -open http://example.com/%1?q=%1");
}

TEST_F(DefaultBrowserTest, GivesTheErrorOfAFailedStart) {
    setCommand("b %1");
    machine_.processes.startError = 2;
    EXPECT_EQ(open(), 2);
    EXPECT_TRUE(machine_.shell.opened.empty());
}

TEST_F(DefaultBrowserTest, LeavesItToTheDesktopWhereThereIsNoClassOfPages) {
    expectHandedToTheDesktop();
}

TEST_F(DefaultBrowserTest, LeavesItToTheDesktopWhereTheClassIsEmpty) {
    setClass("");
    expectHandedToTheDesktop();
}

TEST_F(DefaultBrowserTest, LeavesItToTheDesktopWhereTheClassHasNoCommand) {
    setClass("page");
    expectHandedToTheDesktop();
}

TEST_F(DefaultBrowserTest, LeavesItToTheDesktopWhereTheCommandIsNoPlainText) {
    setCommand("");
    machine_.registry.writeValue(platform::RegistryRoot::kClassesRoot, "page\\shell\\open\\command",
                                 platform::RegistryView::kNative, "", {platform::kRegExpandString, "%b% %1"});
    expectHandedToTheDesktop();
}

TEST_F(DefaultBrowserTest, OpensThePageWithTheRightsOfTheUser) {
    setCommand("b %1");
    machine_.shell.hasRaisedRights = true;
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(machine_.shell.openedForUser, std::vector<std::string>{kUrl});
    EXPECT_TRUE(machine_.processes.started.empty());
    EXPECT_TRUE(machine_.shell.opened.empty());
}

TEST_F(DefaultBrowserTest, FailsWhereTheDesktopCanNotEither) {
    machine_.shell.opens = false;
    EXPECT_NE(open(), 0);
}

TEST_F(DefaultBrowserTest, OpensNothingWithoutAnUrl) {
    setCommand("b %1");
    EXPECT_NE(open(""), 0);
    EXPECT_TRUE(machine_.processes.started.empty());
    EXPECT_TRUE(machine_.shell.opened.empty());
}

}  // namespace
