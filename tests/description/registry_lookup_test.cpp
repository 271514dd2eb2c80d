#include "description/registry_lookup.h"

#include <gtest/gtest.h>

#include "fakes/fake_system_operations.h"

namespace {

class RegistryLookupTest : public testing::Test {
protected:
    void text(const std::string& address, const std::string& data) {
        system_.registryValues[address] = {1, data};
    }
    // The text found, or "(none)".
    std::string find(std::string_view key, std::string_view preferred = "") {
        return lookup_.lookUp({"HKEY_LOCAL_MACHINE", key, "Name", preferred}).value_or("(none)");
    }

    FakeSystemOperations system_;
    RegistryLookup lookup_{system_};
};

TEST_F(RegistryLookupTest, ReadsAValueAndTurnsSlashes) {
    text("HKEY_LOCAL_MACHINE\\a\\b\\Name", "found");
    EXPECT_EQ(find("a/b"), "found");
    EXPECT_EQ(find("a\\c"), "(none)");
}

TEST_F(RegistryLookupTest, AnUnknownHiveFails) {
    text("HKEY_NOWHERE\\a\\Name", "found");
    EXPECT_EQ(lookup_.lookUp({"HKEY_NOWHERE", "a", "Name", ""}), std::nullopt);
    EXPECT_EQ(lookup_.lookUp({"", "a", "Name", ""}), std::nullopt);
}

TEST_F(RegistryLookupTest, AWildcardTriesTheSubkeysInTheirOrder) {
    system_.registryKeys["HKEY_LOCAL_MACHINE\\soft"] = {"v1", "x9", "v2", "v3"};
    text("HKEY_LOCAL_MACHINE\\soft\\v2\\set\\Name", "two");
    text("HKEY_LOCAL_MACHINE\\soft\\v3\\set\\Name", "three");
    text("HKEY_LOCAL_MACHINE\\soft\\x9\\set\\Name", "nine");
    EXPECT_EQ(find("soft/v*/set"), "two");
    EXPECT_EQ(find("soft/x*/set"), "nine");
    EXPECT_EQ(find("soft/V*/set"), "(none)");
}

TEST_F(RegistryLookupTest, SeveralWildcardsAreResolvedOneAfterTheOther) {
    system_.registryKeys["HKEY_LOCAL_MACHINE\\a"] = {"1", "2"};
    system_.registryKeys["HKEY_LOCAL_MACHINE\\a\\1\\b"] = {"x"};
    system_.registryKeys["HKEY_LOCAL_MACHINE\\a\\2\\b"] = {"y", "z"};
    text("HKEY_LOCAL_MACHINE\\a\\2\\b\\z\\Name", "deep");
    EXPECT_EQ(find("a/*/b/*"), "deep");
}

TEST_F(RegistryLookupTest, ANameWithAStarIsNotResolvedAgain) {
    system_.registryKeys["HKEY_LOCAL_MACHINE\\a"] = {"s*", "t"};
    text("HKEY_LOCAL_MACHINE\\a\\s*\\Name", "star");
    EXPECT_EQ(find("a/*"), "star");
}

TEST_F(RegistryLookupTest, ThePreferredKeyComesFirst) {
    system_.registryKeys["HKEY_LOCAL_MACHINE\\a"] = {"1"};
    text("HKEY_LOCAL_MACHINE\\a\\1\\Name", "listed");
    EXPECT_EQ(find("a/*", "a/9"), "listed");
    text("HKEY_LOCAL_MACHINE\\a\\9\\Name", "preferred");
    EXPECT_EQ(find("a/*", "a/9"), "preferred");
    EXPECT_EQ(find("a/*", ""), "listed");
}

TEST_F(RegistryLookupTest, ThePreferredKeyOnlyCountsBesideAWildcard) {
    text("HKEY_LOCAL_MACHINE\\a\\Name", "plain");
    text("HKEY_LOCAL_MACHINE\\p\\Name", "preferred");
    EXPECT_EQ(find("a", "p"), "plain");
}

TEST_F(RegistryLookupTest, AWildcardWithoutParentFindsNothing) {
    EXPECT_EQ(find("none/v*"), "(none)");
}

TEST_F(RegistryLookupTest, ConvertsTheTypes) {
    const std::string key = "HKEY_LOCAL_MACHINE\\k\\Name";
    system_.registryValues[key] = {2, "expand"};
    EXPECT_EQ(find("k"), "expand");
    system_.registryValues[key] = {3, std::string("\x01\xAB\x00", 3)};
    EXPECT_EQ(find("k"), "01ab00");
    system_.registryValues[key] = {4, std::string("\xFF\x01\x00\x00", 4)};
    EXPECT_EQ(find("k"), "1ff");
    system_.registryValues[key] = {7, "multi"};
    EXPECT_EQ(find("k"), "(none)");
}

TEST_F(RegistryLookupTest, FindsNoValueThatIsTooLong) {
    const std::string longest(RegistryLookup::kTextLimit, 'x');
    text("HKEY_LOCAL_MACHINE\\k\\Name", longest);
    EXPECT_EQ(find("k"), longest);
    text("HKEY_LOCAL_MACHINE\\k\\Name", longest + "x");
    EXPECT_EQ(find("k"), "(none)");
}

}  // namespace
