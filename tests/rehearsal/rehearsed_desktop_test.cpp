#include "rehearsal/rehearsed_desktop.h"

#include <gtest/gtest.h>

namespace {

class RehearsedDesktopTest : public testing::Test {
protected:
    RehearsedDesktopTest() { files_.addDirectory("/menu"); }

    MemoryFileSystem files_;
    std::vector<std::string> actions_;
    RehearsedDesktop desktop_{files_, true, actions_};
};

TEST_F(RehearsedDesktopTest, MakesLinksThatAreFiles) {
    EXPECT_EQ(desktop_.createLink("/menu/a", {"/opt/x", "About \"x\"", "-v", "/opt", "/i.png"}), 0);
    EXPECT_EQ(desktop_.linkText(files_.content("/menu/a")),
              "program \"/opt/x\", arguments \"-v\", in \"/opt\", icon \"/i.png\", description \"About "
              "\\\"x\\\"\"");
    EXPECT_EQ(desktop_.createUrlLink("/menu/u", "https://x"), 0);
    EXPECT_EQ(desktop_.linkText(files_.content("/menu/u")), "address \"https://x\"");
    EXPECT_EQ(desktop_.linkText("address \"https://x\""), "");
}

TEST_F(RehearsedDesktopTest, FailsWhereNoFileCanBe) {
    EXPECT_NE(desktop_.createUrlLink("/nowhere/u", "https://x"), 0);
    files_.setReadOnly("/menu");
    EXPECT_NE(desktop_.createLink("/menu/a", {"/opt/x", "", "", "", ""}), 0);
    EXPECT_NE(desktop_.createSymlink("/nowhere/s", "/x"), 0);
}

TEST_F(RehearsedDesktopTest, MakesSymbolicLinksOnlyWhereThereAreSome) {
    EXPECT_EQ(desktop_.createSymlink("/menu/s", "\\opt\\x"), 0);
    EXPECT_EQ(files_.linkTarget("/menu/s"), "/opt/x");
    RehearsedDesktop other(files_, false, actions_);
    EXPECT_NE(other.createSymlink("/menu/t", "/opt/x"), 0);
}

TEST_F(RehearsedDesktopTest, NotesWhatIsOpened) {
    EXPECT_TRUE(desktop_.openDocument("https://x"));
    EXPECT_FALSE(desktop_.openForUser("https://y"));
    EXPECT_EQ(actions_, std::vector<std::string>{"open https://x"});
}

}  // namespace
