#include "engine/journaled_registry.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_registry.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;
constexpr RegistryView kView = RegistryView::kNative;
constexpr const char* kKey = "Software\\Demo";

// Looks around before each change.
class WatchedRegistry : public MemoryRegistry {
public:
    std::function<void()> beforeChange;

    int createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) override {
        beforeChange();
        return MemoryRegistry::createKey(root, path, view, outCreated);
    }
    int deleteKey(RegistryRoot root, std::string_view path, RegistryView view) override {
        beforeChange();
        return MemoryRegistry::deleteKey(root, path, view);
    }
    int writeValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                   const platform::RegistryValue& value) override {
        beforeChange();
        return MemoryRegistry::writeValue(root, path, view, name, value);
    }
    int deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                    std::string_view name) override {
        beforeChange();
        return MemoryRegistry::deleteValue(root, path, view, name);
    }
};

class JournaledRegistryTest : public testing::Test {
protected:
    JournaledRegistryTest() {
        registry_.addText(kRoot, kKey, "Name", "value");
        EXPECT_EQ(journal_.open(), 0);
        registry_.beforeChange = [this] {
            flushedBefore_ = files_.count(MemoryFileSystem::Operation::kFlush);
            stepBefore_ = journal_.read().records.back().step;
        };
        files_.clearOperations();
    }
    // Before the change its record was there, and flushed.
    void expectRecordBefore(RemovalStep step) {
        EXPECT_EQ(flushedBefore_, 1) << static_cast<int>(step);
        EXPECT_EQ(stepBefore_, step);
        files_.clearOperations();
    }

    MemoryFileSystem files_;
    MemoryEnvironment environment_;
    WatchedRegistry registry_;
    RemovalJournal journal_{files_, environment_};
    JournaledRegistry journaled_{registry_, journal_};
    int flushedBefore_ = 0;
    RemovalStep stepBefore_ = RemovalStep::kNote;
};

TEST_F(JournaledRegistryTest, FlushesTheRecordBeforeEachChange) {
    int created = 0;
    EXPECT_EQ(journaled_.createKey(kRoot, "Software\\Demo\\New\\Key", kView, created), 0);
    EXPECT_EQ(created, 2);
    expectRecordBefore(RemovalStep::kCreateKey);
    EXPECT_EQ(journaled_.writeValue(kRoot, kKey, kView, "Name", {platform::kRegString, "x"}), 0);
    expectRecordBefore(RemovalStep::kWriteValue);
    EXPECT_EQ(journaled_.deleteValue(kRoot, kKey, kView, "Name"), 0);
    expectRecordBefore(RemovalStep::kDeleteValue);
    EXPECT_EQ(journaled_.deleteKey(kRoot, "Software\\Demo\\New\\Key", kView), 0);
    expectRecordBefore(RemovalStep::kDeleteKey);
}

TEST_F(JournaledRegistryTest, ChangesNothingThatItCannotWriteDown) {
    files_.failFrom(MemoryFileSystem::Operation::kWrite, "", 1, 28);
    const auto before = registry_.everything();
    int created = 0;
    EXPECT_EQ(journaled_.createKey(kRoot, "Software\\New", kView, created), platform::kRegIoFailed);
    EXPECT_EQ(journaled_.writeValue(kRoot, kKey, kView, "Name", {}), platform::kRegIoFailed);
    EXPECT_EQ(journaled_.deleteValue(kRoot, kKey, kView, "Name"), platform::kRegIoFailed);
    EXPECT_EQ(journaled_.deleteKey(kRoot, kKey, kView), platform::kRegIoFailed);
    EXPECT_EQ(registry_.everything(), before);
}

TEST_F(JournaledRegistryTest, ReplacesNoValueThatItCannotRead) {
    registry_.setForbidden(kKey);
    EXPECT_EQ(journaled_.writeValue(kRoot, kKey, kView, "Name", {}), platform::kRegAccessDenied);
    EXPECT_EQ(journaled_.deleteValue(kRoot, kKey, kView, "Name"), platform::kRegAccessDenied);
    EXPECT_EQ(journaled_.deleteKey(kRoot, kKey, kView), platform::kRegAccessDenied);
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(JournaledRegistryTest, WritesNothingDownWhereNothingCanChange) {
    int created = 7;
    EXPECT_EQ(journaled_.createKey(kRoot, "software\\demo\\", kView, created), 0);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(journaled_.deleteKey(kRoot, "Software", kView), platform::kRegAccessDenied);
    EXPECT_EQ(journaled_.deleteKey(kRoot, "Software\\None", kView), platform::kRegNotFound);
    EXPECT_EQ(journaled_.deleteValue(kRoot, kKey, kView, "None"), platform::kRegNotFound);
    EXPECT_EQ(journaled_.deleteValue(kRoot, "Software\\None", kView, "None"), platform::kRegNotFound);
    EXPECT_EQ(journal_.read().records.size(), 1U);
}

TEST_F(JournaledRegistryTest, KeepsNamesAsTheStoreSpellsThem) {
    EXPECT_EQ(journaled_.deleteValue(kRoot, "SOFTWARE\\DEMO", kView, "NAME"), 0);
    EXPECT_EQ(journal_.read().records.back().other, "Name");
    EXPECT_EQ(journaled_.deleteKey(kRoot, "SOFTWARE\\DEMO", kView), 0);
    EXPECT_EQ(journal_.read().records.back().path, "SOFTWARE\\Demo");
}

}  // namespace
