#include <gtest/gtest.h>

#include "engine/changes/environment_change.h"
#include "engine/changes/own_registry.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/memory/memory_platform.h"
#include "platform/registry.h"

namespace {

using Mode = EnvironmentChange::Mode;

constexpr char kName[] = "TANDREL_TEST_VARIABLE";

// The real registry and files; nothing is broadcast.
class EnvironmentChangeMachineTest : public testing::Test {
protected:
    void SetUp() override { EnvironmentChange::erase(registry_, kName); }
    void TearDown() override { EnvironmentChange::erase(registry_, kName); }

    std::string get() {
        EnvironmentChange::Value value;
        const auto state = EnvironmentChange::read(registry_, kName, value);
        isExpandable_ = value.isExpandable;
        return state == EnvironmentChange::State::kFound ? value.text : "(none)";
    }
    bool set(std::string_view value, bool isExpandable = false) {
        return EnvironmentChange::write(registry_, kName, {std::string(value), isExpandable}) ==
               platform::kRegOk;
    }
    bool add(std::string_view value, Mode mode, bool isPath = false) {
        const RecordedResult result = EnvironmentChange::add(machine_, report_, {kName, value, mode, isPath});
        undo_ = result.undo;
        return result.done;
    }
    bool removeAgain() { return EnvironmentChange::remove(machine_, report_, undo_); }

    MemoryPlatform rest_;
    platform::Registry& registry_ = platform::systemRegistry();
    const platform::Platform machine_{platform::systemFileSystem(),
                                      registry_,
                                      rest_.processes,
                                      rest_.environment,
                                      rest_.console,
                                      rest_.events,
                                      rest_.shell,
                                      rest_.firewall};
    Report report_{nullptr, nullptr};
    std::string undo_;
    bool isExpandable_ = false;  // what get found
};

TEST_F(EnvironmentChangeMachineTest, CreatesReplacesAndRestores) {
    EXPECT_TRUE(add("Gr\xc3\xbc\xc3\x9f", Mode::kReplace));
    const std::string create = undo_;
    EXPECT_TRUE(add("second", Mode::kReplace));
    EXPECT_EQ(get(), "second");
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "Gr\xc3\xbc\xc3\x9f");
    undo_ = create;
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "(none)");
}

TEST_F(EnvironmentChangeMachineTest, KeepsLongValuesByteForByte) {
    for (const std::size_t size : {2047U, 2048U, 32767U}) {
        const std::string longValue(size, 'p');
        ASSERT_TRUE(set(longValue));
        EXPECT_FALSE(add("x", Mode::kReplace));
        EXPECT_EQ(get(), longValue);
        for (const Mode mode : {Mode::kAppend, Mode::kInsert}) {
            ASSERT_TRUE(set(longValue));
            EXPECT_EQ(add("/new", mode), size == 2047U);
            EXPECT_EQ(get().size(), size == 2047U ? size + 5 : size);
            EXPECT_EQ(removeAgain(), size == 2047U);
            EXPECT_EQ(get(), longValue + (size == 2047U && mode == Mode::kAppend ? ";" : ""));
        }
    }
}

TEST_F(EnvironmentChangeMachineTest, KeepsTheTypeOfAValueWithReferences) {
    for (const bool isExpandable : {true, false}) {
        ASSERT_TRUE(set("%SystemRoot%\\bin;%R%", isExpandable));
        EXPECT_TRUE(add("/new", Mode::kAppend));
        EXPECT_EQ(get(), "%SystemRoot%\\bin;%R%;/new");
        EXPECT_EQ(isExpandable_, isExpandable);
        EXPECT_TRUE(removeAgain());
        EXPECT_EQ(get(), "%SystemRoot%\\bin;%R%;");
        EXPECT_EQ(isExpandable_, isExpandable);
    }
}

TEST_F(EnvironmentChangeMachineTest, FindsADirectoryThatIsThereAlready) {
    const TemporaryDirectory directory;
    ASSERT_TRUE(set("/none;\"" + directory.path() + "/\""));
    EXPECT_TRUE(add(directory.path(), Mode::kAppend, true));
    EXPECT_EQ(undo_, "NONE");
    const TemporaryDirectory other;
    EXPECT_TRUE(add(other.path(), Mode::kInsert, true));
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "/none;\"" + directory.path() + "/\"");
}

}  // namespace
