#include "engine/shortcut_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ShortcutTagsTest : public TagsTest {
protected:
    int apply(const std::string& groups) {
        describe(groups);
        return walker_.apply(&ui_);
    }

    ShortcutTags walker_{context_, files_};
};

TEST_F(ShortcutTagsTest, HandEachTypeOnWithItsNumber) {
    variables_.setVariable("M", "/menu/Demo");
    EXPECT_EQ(apply("<Shortcuts><Add Type='File' Dest='[M]' Target='/a//b.exe' Arguments='a//b' "
                    "StartPath='/a//' IconPath='/a//i.ico' Description='D'>Start.lnk</Add>"
                    "<Add Type='URL' Dest='[M]/' Target='http://x//y'>Web.url</Add>"
                    "<Add Type='Uninstall' Dest='[M]'>Remove.lnk</Add>"
                    "<Add Type='Symlink' Dest='[M]' Target='t'>Link</Add></Shortcuts>"),
              0);
    EXPECT_THAT(
        changes_.calls,
        ElementsAre(
            "addShortcut(2, \\menu\\Demo\\Start.lnk, \\a\\b.exe, D, a//b, \\a\\, \\a\\i.ico)",
            "addShortcut(3, \\menu\\Demo\\Web.url, http://x//y, Tandrel Group installer shortcut, , , )",
            "addShortcut(4, \\menu\\Demo\\Remove.lnk, , Tandrel Group installer shortcut, , , )",
            "addShortcut(1, \\menu\\Demo\\Link, t, Tandrel Group installer shortcut, , , )"));
    EXPECT_EQ(records(),
              "DIR\t2\t\\menu\\Demo\\\r\nSHORTCUT\tUNDO\r\nSHORTCUT\tUNDO\r\nSHORTCUT\tUNDO\r\n"
              "SHORTCUT\tUNDO\r\n");
    EXPECT_TRUE(files_.hasDirectory("/menu/Demo"));
}

TEST_F(ShortcutTagsTest, PassOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_EQ(
        apply("<Shortcuts><Add Dest='/m' Target='t'>x</Add><Add Type='file' Dest='/m' Target='t'>x</Add>"
              "<Add Type='File' Target='t'>x</Add><Add Type='File' Dest='/m'>x</Add>"
              "<Remove Type='File' Dest='/m' Target='t'>x</Remove>"
              "<Add Type='File' Dest='/m' Target='t' Condition='1==2'>x</Add></Shortcuts>"),
        0);
    EXPECT_THAT(changes_.calls, IsEmpty());
    EXPECT_FALSE(files_.hasDirectory("/m"));
}

TEST_F(ShortcutTagsTest, EndAGroupWithItsFailureAndGoOnWithTheNext) {
    changes_.failing = {"addShortcut(1)"};
    EXPECT_EQ(apply("<Shortcuts><Add Type='Symlink' Dest='/tmp' Target='t' Arguments='a'>x</Add>"
                    "<Add Type='File' Dest='/tmp' Target='t'>y</Add></Shortcuts>"
                    "<Shortcuts><Add Type='File' Dest='/tmp' Target='t'>z</Add></Shortcuts>"),
              1);
    EXPECT_EQ(changes_.calls.size(), 2U);
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Creating shortcut: \"\\tmp\\x\" to \"t\" and args\"a\""));
    EXPECT_EQ(records(), "SHORTCUT\tUNDO\r\n");
}

TEST_F(ShortcutTagsTest, EndAGroupWhoseDirectoryCannotBeMade) {
    files_.failAt(MemoryFileSystem::Operation::kCreateDirectory, "/m/n", 1);
    EXPECT_EQ(apply("<Shortcuts><Add Type='File' Dest='/m/n' Target='t'>x</Add>"
                    "<Add Type='File' Dest='/tmp' Target='t'>y</Add></Shortcuts>"),
              1);
    EXPECT_THAT(changes_.calls, IsEmpty());
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Creating directory: \"\\m\\n\\\""));
}

}  // namespace
