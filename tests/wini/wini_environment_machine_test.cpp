#include <gtest/gtest.h>

#include "engine/changes/environment_change.h"
#include "engine/changes/record_text.h"
#include "engine/report.h"
#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "platform/registry.h"
#include "wini/machine_fixture.h"

namespace {

constexpr char kName[] = "TANDREL_TEST_VARIABLE";

// A variable of this machine's system environment.
class WiniEnvironmentMachineTest : public MachineTest {
protected:
    void SetUp() override { EnvironmentChange::erase(machine_.registry, kName); }
    void TearDown() override { EnvironmentChange::erase(machine_.registry, kName); }

    std::string get() {
        std::string value;
        return EnvironmentChange::read(machine_.registry, kName, value) == EnvironmentChange::State::kFound
                   ? value
                   : "(none)";
    }
    bool add(const std::string& value, EnvironmentChange::Mode mode, bool isPath = false) {
        RecordedResult result = EnvironmentChange::add(machine_, report_, {kName, value, mode, isPath});
        undo_ = result.undo;
        return result.done;
    }
    bool removeAgain() { return EnvironmentChange::remove(machine_, report_, undo_); }

    Report report_{nullptr, nullptr};
    std::string undo_;
};

TEST_F(WiniEnvironmentMachineTest, CreatesReplacesAndRestores) {
    EXPECT_TRUE(add("Gr\xc3\xbc\xc3\x9f", EnvironmentChange::Mode::kReplace));
    const std::string create = undo_;
    EXPECT_TRUE(add("second", EnvironmentChange::Mode::kReplace));
    EXPECT_EQ(get(), "second");
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "Gr\xc3\xbc\xc3\x9f");
    undo_ = create;
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "(none)");
}

TEST_F(WiniEnvironmentMachineTest, KeepsLongValuesByteForByte) {
    for (const std::size_t size : {2047U, 2048U, 32767U}) {
        const std::string longValue(size, 'p');
        ASSERT_TRUE(EnvironmentChange::write(machine_.registry, kName, longValue));
        EXPECT_FALSE(add("x", EnvironmentChange::Mode::kReplace));
        EXPECT_EQ(get(), longValue);
        for (const EnvironmentChange::Mode mode :
             {EnvironmentChange::Mode::kAppend, EnvironmentChange::Mode::kInsert}) {
            ASSERT_TRUE(EnvironmentChange::write(machine_.registry, kName, longValue));
            EXPECT_EQ(add("/new", mode), size == 2047U);
            EXPECT_EQ(get().size(), size == 2047U ? size + 5 : size);
            EXPECT_EQ(removeAgain(), size == 2047U);
            EXPECT_EQ(get(),
                      longValue + (size == 2047U && mode == EnvironmentChange::Mode::kAppend ? ";" : ""));
        }
    }
}

TEST_F(WiniEnvironmentMachineTest, FindsADirectoryThatIsThereAlready) {
    const TemporaryDirectory directory;
    ASSERT_TRUE(EnvironmentChange::write(machine_.registry, kName, "/none;\"" + directory.path() + "/\""));
    EXPECT_TRUE(add(directory.path(), EnvironmentChange::Mode::kAppend, true));
    EXPECT_EQ(undo_, "NONE");
    const TemporaryDirectory other;
    EXPECT_TRUE(add(other.path(), EnvironmentChange::Mode::kInsert, true));
    EXPECT_TRUE(removeAgain());
    EXPECT_EQ(get(), "/none;\"" + directory.path() + "/\"");
}

}  // namespace
