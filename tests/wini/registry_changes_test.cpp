#include "wini/registry_changes.h"

#include <gtest/gtest.h>

#include "fakes/memory_registry.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryValue;

constexpr char kMachine[] = "HKEY_LOCAL_MACHINE";
constexpr auto kRoot = RegistryRoot::kLocalMachine;

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

class RegistryChangesTest : public testing::Test {
protected:
    RegistryChangesTest() { registry_.addKey(kRoot, "Software"); }

    int write(const char* path, const char* type, const char* data, const char* name = "Name") {
        created_ = 77;
        return changes_.writeRegistryValue(kMachine, path, type, name, data, created_);
    }
    // What is written for the text, as type and bytes.
    std::pair<std::uint32_t, std::string> written(const char* type, const char* data) {
        EXPECT_EQ(write("Software", type, data), 0);
        const RegistryValue* value = registry_.value(kRoot, "Software", "Name");
        return value == nullptr ? std::make_pair(99U, std::string("none"))
                                : std::make_pair(value->type, value->data);
    }
    std::uint32_t doubleWord(const char* data) {
        const auto [type, bytes] = written("REG_DWORD", data);
        EXPECT_EQ(type, platform::kRegDword);
        std::uint32_t number = 0;
        for (std::size_t i = bytes.size(); i > 0; --i) {
            number = number << 8 | static_cast<unsigned char>(bytes[i - 1]);
        }
        return bytes.size() == 4 ? number : 0xDEAD;
    }
    std::string binary(const char* data) {
        const auto [type, bytes] = written("REG_BINARY", data);
        EXPECT_EQ(type, platform::kRegBinary);
        return bytes;
    }
    bool hasKey(const char* path) { return registry_.hasKey(kRoot, path); }

    BreakingRegistry registry_;
    RegistryChanges changes_{registry_};
    int created_ = 0;
};

using Written = std::pair<std::uint32_t, std::string>;

TEST_F(RegistryChangesTest, writesTextWithoutATypeAndAsText) {
    EXPECT_EQ(written("REG_SZ", "text"), Written(platform::kRegString, "text"));
    EXPECT_EQ(written(nullptr, "other"), Written(platform::kRegString, "other"));
    EXPECT_EQ(written("", ""), Written(platform::kRegString, ""));
    EXPECT_EQ(created_, 0);
}

TEST_F(RegistryChangesTest, readsDoubleWordsInBaseSixteen) {
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

TEST_F(RegistryChangesTest, readsBinaryDataByPairs) {
    EXPECT_EQ(binary("00ff1A2b"), std::string("\x00\xff\x1a\x2b", 4));
    EXPECT_EQ(binary("aAbB"), "\xaa\xbb");
    EXPECT_EQ(binary(""), "");
}

TEST_F(RegistryChangesTest, writesZeroesForHalfAPair) {
    EXPECT_EQ(binary("abc"), std::string("\0", 1));
    EXPECT_EQ(binary("abcde"), std::string("\0\0", 2));
    EXPECT_EQ(binary("a"), "");
}

TEST_F(RegistryChangesTest, takesNonsenseInBinaryDataWithoutAComplaint) {
    EXPECT_EQ(binary("zz??").size(), 2U);
}

TEST_F(RegistryChangesTest, writesAnEmptyTextForAnotherType) {
    EXPECT_EQ(written("REG_QWORD", "5"), Written(platform::kRegString, ""));
    EXPECT_EQ(written("reg_sz", "5"), Written(platform::kRegString, ""));
}

TEST_F(RegistryChangesTest, makesTheMissingKeysOfAValueAndCountsThem) {
    EXPECT_EQ(write("Software/Demo\\Plug-ins", nullptr, "x"), 0);
    EXPECT_EQ(created_, 2);
    ASSERT_NE(registry_.value(kRoot, "Software\\Demo\\Plug-ins", "Name"), nullptr);
    EXPECT_EQ(write("Software/Demo/Plug-ins", nullptr, "y"), 0);
    EXPECT_EQ(created_, 0);
}

TEST_F(RegistryChangesTest, writesTheDefaultValue) {
    EXPECT_EQ(write("Software", nullptr, "x", ""), 0);
    EXPECT_NE(registry_.value(kRoot, "Software", ""), nullptr);
}

TEST_F(RegistryChangesTest, refusesMissingArgumentsAndOtherRoots) {
    int created = 77;
    EXPECT_EQ(changes_.writeRegistryValue(nullptr, "Software", nullptr, "a", "b", created), -1);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(changes_.writeRegistryValue("HKLM", "Software", nullptr, "a", "b", created), -1);
    EXPECT_EQ(changes_.writeRegistryValue(kMachine, nullptr, nullptr, "a", "b", created), -1);
    EXPECT_EQ(changes_.writeRegistryValue(kMachine, "Software", nullptr, nullptr, "b", created), -1);
    EXPECT_EQ(changes_.writeRegistryValue(kMachine, "Software", nullptr, "a", nullptr, created), -1);
    EXPECT_EQ(changes_.createRegistryKey("HKLM", "Software\\a"), 0);
    EXPECT_EQ(changes_.createRegistryKey(kMachine, nullptr), 0);
    EXPECT_EQ(changes_.deleteRegistryValue("HKLM", "Software", "a"), -1);
    EXPECT_EQ(changes_.deleteRegistryValue(kMachine, nullptr, "a"), -1);
    EXPECT_EQ(changes_.deleteRegistryValue(kMachine, "Software", nullptr), -1);
    EXPECT_EQ(changes_.deleteRegistryKeys("HKLM", "Software", 1), 0);
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, nullptr, 1), 0);
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangesTest, tellsTheSystemsError) {
    registry_.setReadOnly("Software\\Closed");
    registry_.addKey(kRoot, "Software\\Closed");
    EXPECT_EQ(write("Software\\Closed", nullptr, "x"), platform::kRegAccessDenied);
    EXPECT_EQ(created_, 0);
    EXPECT_EQ(write("Software\\Closed\\Below", nullptr, "x"), platform::kRegNotFound);
    EXPECT_EQ(created_, 0);
    EXPECT_EQ(changes_.deleteRegistryValue(kMachine, "Software", "none"), platform::kRegNotFound);
}

// The value fails where its key could be made.
class UnwritableRegistry : public MemoryRegistry {
public:
    int writeValue(RegistryRoot root, std::string_view path, platform::RegistryView view, const char*,
                   const RegistryValue&) override {
        const int status = testKey(root, path, view);
        return status == platform::kRegOk ? static_cast<int>(platform::kRegDiskFull) : status;
    }
};

TEST(RegistryChangesFailureTest, leavesNoKeysOfAValueThatFails) {
    UnwritableRegistry registry;
    registry.addKey(kRoot, "Software");
    int created = 77;
    EXPECT_EQ(
        RegistryChanges(registry).writeRegistryValue(kMachine, "Software\\a\\b", nullptr, "n", "d", created),
        platform::kRegDiskFull);
    EXPECT_EQ(created, 0);
    EXPECT_FALSE(registry.hasKey(kRoot, "Software\\a"));
    EXPECT_TRUE(registry.hasKey(kRoot, "Software"));
}

TEST_F(RegistryChangesTest, countsTheLevelsOfANewKey) {
    EXPECT_EQ(changes_.createRegistryKey(kMachine, "Software\\a\\b\\c"), 3);
    EXPECT_EQ(changes_.createRegistryKey(kMachine, "Software/a/b/c"), 0);
    EXPECT_EQ(changes_.createRegistryKey(kMachine, "Software\\a\\\\d\\"), 1);
    EXPECT_TRUE(hasKey("Software\\a\\d"));
}

TEST_F(RegistryChangesTest, takesBackTheLevelsOfAKeyThatFails) {
    registry_.broken = "Software\\a\\b\\c";
    EXPECT_EQ(changes_.createRegistryKey(kMachine, "Software\\a\\b\\c\\d"), 0);
    EXPECT_FALSE(hasKey("Software\\a"));
    EXPECT_TRUE(hasKey("Software"));
}

TEST_F(RegistryChangesTest, takesBackOnlyTheLevelsThatItMade) {
    registry_.addKey(kRoot, "Software\\a");
    registry_.broken = "Software\\a\\b\\c";
    EXPECT_EQ(changes_.createRegistryKey(kMachine, "Software\\a\\b\\c"), 0);
    EXPECT_FALSE(hasKey("Software\\a\\b"));
    EXPECT_TRUE(hasKey("Software\\a"));
}

TEST_F(RegistryChangesTest, makesNothingWhereTheKeyCannotBeLookedAt) {
    registry_.setForbidden("Software\\Secret");
    registry_.addKey(kRoot, "Software\\Secret");
    EXPECT_EQ(changes_.createRegistryKey(kMachine, "Software\\Secret"), 0);
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangesTest, deletesAsManyLevelsAsAsked) {
    registry_.addKey(kRoot, "Software\\a\\b\\c");
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "Software/a/b/c", 2), 2);
    EXPECT_TRUE(hasKey("Software\\a"));
    EXPECT_FALSE(hasKey("Software\\a\\b"));
}

TEST_F(RegistryChangesTest, keepsAKeyWithAForeignSubkeyAndAllAboveIt) {
    registry_.addKey(kRoot, "Software\\a\\b\\c");
    registry_.addText(kRoot, "Software\\a\\b\\foreign", "n", "data");
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "Software\\a\\b\\c", 3), 1);
    EXPECT_FALSE(hasKey("Software\\a\\b\\c"));
    EXPECT_NE(registry_.value(kRoot, "Software\\a\\b\\foreign", "n"), nullptr);
}

TEST_F(RegistryChangesTest, deletesNothingWithoutAsManyLevels) {
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "Software", 2), 0);
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "", 1), 0);
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "\\\\", 1), 0);
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "Software", 0), 0);
    EXPECT_EQ(changes_.deleteRegistryKeys(kMachine, "Software", -1), 0);
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangesTest, deletesAValue) {
    registry_.addText(kRoot, "Software\\a", "n", "data");
    EXPECT_EQ(changes_.deleteRegistryValue(kMachine, "Software/a", "n"), 0);
    EXPECT_EQ(registry_.value(kRoot, "Software\\a", "n"), nullptr);
    EXPECT_TRUE(hasKey("Software\\a"));
}

TEST_F(RegistryChangesTest, writesNothingThatTheUndoCouldNotName) {
    const std::string longPath = "Software\\" + std::string(RegistryChanges::kPathLimit - 9, 'k');
    EXPECT_EQ(write(longPath.c_str(), nullptr, "x"), 0);
    registry_.operations.clear();
    EXPECT_EQ(write((longPath + "k").c_str(), nullptr, "x"), platform::kRegBadArgument);
    EXPECT_EQ(changes_.createRegistryKey(kMachine, (longPath + "k").c_str()), 0);
    for (const char* text : {"a\tb", "a\nb", "a\r", "a "}) {
        EXPECT_EQ(write("Software", nullptr, "x", text), platform::kRegBadArgument);
        EXPECT_EQ(write(text, nullptr, "x"), platform::kRegBadArgument);
        EXPECT_EQ(changes_.createRegistryKey(kMachine, text), 0);
    }
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(RegistryChangesTest, keepsPathAndNameWithinALineOfTheLog) {
    // "REGVAL", three separators, the root's name and "Software" stand beside the name.
    const std::string name(1023 - 6 - 3 - 18 - 8, 'n');
    EXPECT_EQ(write("Software", nullptr, "x", name.c_str()), 0);
    EXPECT_EQ(write("Software", nullptr, "x", (name + "n").c_str()), platform::kRegBadArgument);
}

}  // namespace
