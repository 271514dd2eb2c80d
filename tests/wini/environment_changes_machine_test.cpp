#include <gtest/gtest.h>

#include "fakes/fake_shell_objects.h"
#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "platform/registry.h"
#include "wini/environment_changes.h"
#include "wini/machine_fixture.h"

namespace {

constexpr char kName[] = "TANDREL_TEST_VARIABLE";

class EnvironmentChangesMachineTest : public MachineTest {
protected:
    void SetUp() override { changes_.deleteEnvironmentValue(kName); }
    void TearDown() override { changes_.deleteEnvironmentValue(kName); }

    std::string get() {
        std::string value;
        return changes_.readEnvironmentValue(kName, value) == EnvironmentRead::kFound ? value : "(none)";
    }
    bool add(const std::string& value, EnvironmentMode mode, bool isPath = false) {
        return changes_.addEnvironmentEntry(kName, value.c_str(), mode, undo_, nullptr, isPath);
    }
    bool removeAgain() { return changes_.removeEnvironmentEntry(undo_.c_str(), nullptr); }

    FakeShellObjects shell_;
    ErrorList errors_;
    EnvironmentChanges changes_{machine_.registry, machine_.files, shell_, errors_};
    std::string undo_;
};

TEST_F(EnvironmentChangesMachineTest, CreatesReplacesAndRestores) {
    EXPECT_TRUE(add("Gr\xc3\xbc\xc3\x9f", EnvironmentMode::kReplace));
    const std::string create = undo_;
    EXPECT_TRUE(add("second", EnvironmentMode::kReplace));
    EXPECT_EQ(get(), "second");
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "Gr\xc3\xbc\xc3\x9f");
    undo_ = create;
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "(none)");
}

TEST_F(EnvironmentChangesMachineTest, KeepsLongValuesByteForByte) {
    for (const std::size_t size : {2047U, 2048U, 32767U}) {
        const std::string longValue(size, 'p');
        ASSERT_TRUE(changes_.writeEnvironmentValue(kName, longValue));
        EXPECT_FALSE(add("x", EnvironmentMode::kReplace));
        EXPECT_EQ(get(), longValue);
        for (const EnvironmentMode mode : {EnvironmentMode::kAppend, EnvironmentMode::kInsert}) {
            ASSERT_TRUE(changes_.writeEnvironmentValue(kName, longValue));
            EXPECT_EQ(add("/new", mode), size == 2047U);
            EXPECT_EQ(get().size(), size == 2047U ? size + 5 : size);
            EXPECT_EQ(removeAgain(), size == 2047U);
            EXPECT_EQ(get(), longValue + (size == 2047U && mode == EnvironmentMode::kAppend ? ";" : ""));
        }
    }
}

TEST_F(EnvironmentChangesMachineTest, FindsADirectoryThatIsThereAlready) {
    const TemporaryDirectory directory;
    ASSERT_TRUE(changes_.writeEnvironmentValue(kName, "/none;\"" + directory.path() + "/\""));
    EXPECT_TRUE(add(directory.path(), EnvironmentMode::kAppend, true));
    EXPECT_EQ(undo_, "NONE");
    const TemporaryDirectory other;
    EXPECT_TRUE(add(other.path(), EnvironmentMode::kInsert, true));
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "/none;\"" + directory.path() + "/\"");
}

}  // namespace
