#include "packager/tree_names.h"

#include <gtest/gtest.h>

namespace {

bool isFine(const std::string& name, NameUse use = NameUse::kFile, TargetSystem target = TargetSystem::kAny) {
    return nameFault(name, use, target).empty();
}

TEST(TreeNamesTest, TakesWhatADescriptionCanCarry) {
    for (const std::string name :
         {"a", ".hidden", "a b", "<&>'\"", "&#65;", "\xC3\xBC", "a;b", "con", "a.", "*?"}) {
        for (const NameUse use : {NameUse::kFile, NameUse::kDirectory, NameUse::kLink}) {
            EXPECT_EQ(nameFault(name, use, TargetSystem::kLinux), "") << name;
        }
    }
    EXPECT_TRUE(isFine(std::string(258, 'x')));
}

TEST(TreeNamesTest, RefusesWhatADescriptionCannotCarry) {
    for (const std::string name : {"a\nb", "\x01", "\x7F", "\xC3", "\xED\xA0\x80", "\xEF\xBF\xBD", "a:b",
                                   "a\\b", " a", "a ", ".. \\..\\"}) {
        EXPECT_FALSE(isFine(name)) << name;
    }
    EXPECT_FALSE(isFine(std::string("a\0b", 3)));
    EXPECT_EQ(nameFault(std::string(259, 'x'), NameUse::kFile, TargetSystem::kAny),
              "259 bytes, at most 258 are possible");
}

TEST(TreeNamesTest, RefusesABracketWhereReferencesAreReplaced) {
    EXPECT_TRUE(isFine("[A]", NameUse::kFile));
    EXPECT_FALSE(isFine("[A]", NameUse::kDirectory));
    EXPECT_FALSE(isFine("a[", NameUse::kLink));
    EXPECT_TRUE(isFine("a]", NameUse::kLink));
}

TEST(TreeNamesTest, RefusesForWindowsWhatItCannotHave) {
    for (const std::string name :
         {"a<b", "a>b", "a\"b", "a|b", "a?b", "a*b", "a.", "con", "NUL.txt", "Com1", "lpt9.x.y", "aux .c"}) {
        EXPECT_FALSE(isFine(name, NameUse::kFile, TargetSystem::kWindows)) << name;
        EXPECT_TRUE(isFine(name, NameUse::kFile, TargetSystem::kAny)) << name;
    }
    for (const std::string name : {"console", "com", "com10", "lpta", ".con", "a&b"}) {
        EXPECT_TRUE(isFine(name, NameUse::kFile, TargetSystem::kWindows)) << name;
    }
}

TEST(TreeNamesTest, TakesRelativeLinksThatStayInTheTree) {
    for (const std::string text : {"a", "./a", "a/b//c", "../x", "../../d/x", "..", "../.", "a/"}) {
        EXPECT_EQ(linkFault("d/e/link", text), "") << text;
    }
    EXPECT_EQ(linkFault("link", "d/x"), "");
    EXPECT_EQ(linkFault("link", "."), "");
}

TEST(TreeNamesTest, RefusesLinksThatMayLeaveTheTree) {
    for (const std::string text : {"", "/", "/etc/passwd"}) {
        EXPECT_EQ(linkFault("d/link", text), "isn't relative") << text;
    }
    // A part that is a link itself has its ".." elsewhere.
    for (const std::string text : {"../../x", "../..", "./../../x", "a/..", "a/../b", "../a/../../x"}) {
        EXPECT_EQ(linkFault("d/link", text), "leads out of the tree, or may do so") << text;
    }
    EXPECT_EQ(linkFault("link", ".."), "leads out of the tree, or may do so");
    for (const std::string text : {"[A]", "a:b", "a\\b", "a/ b", "a\n", "C:"}) {
        EXPECT_EQ(linkFault("link", text).find("leads to a name with "), 0U) << text;
    }
}

}  // namespace
