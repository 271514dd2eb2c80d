#include "platform/posix/sqlite_registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "fakes/temporary_directory.h"
#include "platform/clock.h"

namespace {

using namespace platform;

constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;
constexpr RegistryView kView = RegistryView::kNative;

class SqliteRegistryTest : public testing::Test {
protected:
    std::string databaseFile() const { return state_ + "/registry.db"; }

    void fill() {
        int created = 0;
        ASSERT_EQ(registry_.createKey(kRoot, "Software\\Vendor", kView, created), kRegOk);
        for (int i = 0; i < 50; ++i) {
            const RegistryValue value{kRegString, std::string(200, 'x')};
            ASSERT_EQ(
                registry_.writeValue(kRoot, "Software\\Vendor", kView, std::to_string(i).c_str(), value),
                kRegOk);
        }
    }

    // Calls each operation once. A damaged store may answer anything but must neither crash nor hang.
    std::vector<int> statusesOfAllOperations() {
        int created = 0;
        std::vector<std::string> names;
        RegistryValue value{kRegString, "x"};
        return {registry_.testKey(kRoot, "Software\\Vendor", kView),
                registry_.listKeys(kRoot, "Software", kView, names),
                registry_.listValues(kRoot, "Software\\Vendor", kView, names),
                registry_.readValue(kRoot, "Software\\Vendor", kView, "7", value),
                registry_.createKey(kRoot, "Software\\Other", kView, created),
                registry_.writeValue(kRoot, "Software\\Vendor", kView, "7", value),
                registry_.deleteValue(kRoot, "Software\\Vendor", kView, "8"),
                registry_.deleteKey(kRoot, "Software\\Vendor", kView)};
    }

    void executeSql(const char* statements) {
        sqlite3* connection = nullptr;
        ASSERT_EQ(sqlite3_open(databaseFile().c_str(), &connection), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(connection, statements, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(connection);
    }

    TemporaryDirectory directory_;
    const std::string state_ = directory_.file("deep/state");
    SqliteRegistry registry_{state_};
};

TEST_F(SqliteRegistryTest, LookingUpAndFailedChangesCreateNothing) {
    std::vector<std::string> names{"stale"};
    RegistryValue value;
    EXPECT_EQ(registry_.testKey(kRoot, "Software", kView), kRegNotFound);
    EXPECT_EQ(registry_.testKey(kRoot, "", kView), kRegOk);
    EXPECT_EQ(registry_.readValue(kRoot, "Software", kView, "x", value), kRegNotFound);
    EXPECT_EQ(registry_.listKeys(kRoot, "", kView, names), kRegOk);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(registry_.listKeys(kRoot, "Software", kView, names), kRegNotFound);
    EXPECT_EQ(registry_.writeValue(kRoot, "Software", kView, "x", value), kRegNotFound);
    EXPECT_EQ(registry_.deleteValue(kRoot, "Software", kView, "x"), kRegNotFound);
    EXPECT_EQ(registry_.deleteKey(kRoot, "Software", kView), kRegNotFound);
    EXPECT_FALSE(testFileExists(directory_.file("deep")));
}

TEST_F(SqliteRegistryTest, TheDirectoryIsMadeReadableForAll) {
    const mode_t mask = umask(022);
    int created = 0;
    EXPECT_EQ(registry_.createKey(kRoot, "a", kView, created), kRegOk);
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(state_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755U);
    ASSERT_EQ(stat(databaseFile().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(SqliteRegistryTest, RootsAndViewsAreKeptApart) {
    int created = 0;
    ASSERT_EQ(registry_.createKey(kRoot, "a", kView, created), kRegOk);
    EXPECT_EQ(registry_.testKey(kRoot, "a", RegistryView::k32Bit), kRegNotFound);
    EXPECT_EQ(registry_.testKey(RegistryRoot::kCurrentUser, "a", kView), kRegNotFound);
    EXPECT_EQ(registry_.testKey(kRoot, "a", kView), kRegOk);
}

TEST_F(SqliteRegistryTest, RootsCannotBeDeleted) {
    EXPECT_EQ(registry_.deleteKey(kRoot, "", kView), kRegAccessDenied);
    EXPECT_EQ(registry_.deleteKey(kRoot, "\\", kView), kRegAccessDenied);
}

TEST_F(SqliteRegistryTest, SeparatorsInARowCountOnce) {
    int created = 0;
    ASSERT_EQ(registry_.createKey(kRoot, "\\a\\\\b\\", kView, created), kRegOk);
    EXPECT_EQ(created, 2);
    EXPECT_EQ(registry_.testKey(kRoot, "a\\b", kView), kRegOk);
}

TEST_F(SqliteRegistryTest, NamesNeedNotBeValidUtf8) {
    int created = 0;
    ASSERT_EQ(registry_.createKey(kRoot, "a\xff'\"%", kView, created), kRegOk);
    ASSERT_EQ(registry_.writeValue(kRoot, "A\xff'\"%", kView, "\xc3", {kRegString, "\xfe"}), kRegOk);
    RegistryValue value;
    ASSERT_EQ(registry_.readValue(kRoot, "a\xff'\"%", kView, "\xc3", value), kRegOk);
    EXPECT_EQ(value.data, "\xfe");
    std::vector<std::string> names;
    ASSERT_EQ(registry_.listKeys(kRoot, "", kView, names), kRegOk);
    EXPECT_THAT(names, testing::ElementsAre("a\xff'\"%"));
}

TEST_F(SqliteRegistryTest, LimitsHold) {
    int created = 0;
    std::string deep;
    for (int level = 0; level < 512; ++level) {
        deep += "k\\";
    }
    EXPECT_EQ(registry_.createKey(kRoot, std::string(255, 'a').c_str(), kView, created), kRegOk);
    EXPECT_EQ(registry_.createKey(kRoot, std::string(256, 'a').c_str(), kView, created), kRegBadArgument);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(registry_.createKey(kRoot, deep.c_str(), kView, created), kRegOk);
    EXPECT_EQ(created, 512);
    EXPECT_EQ(registry_.createKey(kRoot, (deep + "k").c_str(), kView, created), kRegBadArgument);
    EXPECT_EQ(registry_.writeValue(kRoot, "k", kView, std::string(16383, 'v').c_str(), {}), kRegOk);
    EXPECT_EQ(registry_.writeValue(kRoot, "k", kView, std::string(16384, 'v').c_str(), {}), kRegBadArgument);
}

TEST_F(SqliteRegistryTest, AnEmptyFileIsAnEmptyRegistry) {
    ASSERT_EQ(mkdir(directory_.file("deep").c_str(), 0755), 0);
    ASSERT_EQ(mkdir(state_.c_str(), 0755), 0);
    writeTestFile(databaseFile(), "");
    EXPECT_EQ(registry_.testKey(kRoot, "a", kView), kRegNotFound);
    int created = 0;
    EXPECT_EQ(registry_.createKey(kRoot, "a", kView, created), kRegOk);
    EXPECT_EQ(registry_.testKey(kRoot, "a", kView), kRegOk);
}

TEST_F(SqliteRegistryTest, AForeignFileIsRefusedAndKept) {
    fill();
    for (const char* change :
         {"PRAGMA user_version = 2", "PRAGMA user_version = 1; PRAGMA application_id = 1",
          "PRAGMA user_version = 0; PRAGMA application_id = 0"}) {
        executeSql(change);
        const std::string before = readTestFile(databaseFile());
        for (const int status : statusesOfAllOperations()) {
            EXPECT_EQ(status, kRegForeign) << change;
        }
        EXPECT_EQ(readTestFile(databaseFile()), before);
    }
}

TEST_F(SqliteRegistryTest, AFileThatIsNoDatabaseIsDamaged) {
    fill();
    writeTestFile(databaseFile(), std::string(5000, 'x'));
    for (const int status : statusesOfAllOperations()) {
        EXPECT_EQ(status, kRegDamaged);
    }
    EXPECT_EQ(readTestFile(databaseFile()), std::string(5000, 'x'));
}

TEST_F(SqliteRegistryTest, MissingTablesAreDamage) {
    fill();
    executeSql("DROP TABLE keys; DROP TABLE entries");
    for (const int status : statusesOfAllOperations()) {
        EXPECT_EQ(status, kRegDamaged);
    }
}

TEST_F(SqliteRegistryTest, DamageAnywhereNeverCrashes) {
    fill();
    const std::string whole = readTestFile(databaseFile());
    std::mt19937 random(1);
    for (std::size_t round = 0; round < 100; ++round) {
        std::string damaged = whole;
        for (int byte = 0; byte < 20; ++byte) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        writeTestFile(databaseFile(), damaged);
        for (const int status : statusesOfAllOperations()) {
            EXPECT_THAT(status, testing::AnyOf(kRegOk, kRegNotFound, kRegAccessDenied, kRegDamaged,
                                               kRegForeign, kRegIoFailed, kRegDiskFull));
        }
    }
}

TEST_F(SqliteRegistryTest, AFileCutAnywhereNeverCrashes) {
    fill();
    const std::string whole = readTestFile(databaseFile());
    for (std::size_t length = 1; length < whole.size(); length += length < 128 ? 1 : 1021) {
        writeTestFile(databaseFile(), whole.substr(0, length));
        for (const int status : statusesOfAllOperations()) {
            EXPECT_NE(status, kRegBadArgument) << length;
        }
    }
}

TEST_F(SqliteRegistryTest, AKillAtAnyTimeLeavesItWhole) {
    fill();
    for (std::uint32_t round = 0; round < 30; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            for (int i = 0;; ++i) {
                int created = 0;
                const std::string key = "Pair\\" + std::to_string(i % 7) + "\\low";
                registry_.createKey(kRoot, key.c_str(), kView, created);
                registry_.deleteKey(kRoot, key.c_str(), kView);
                registry_.writeValue(kRoot, "Software\\Vendor", kView, "3",
                                     {kRegString, std::string(9000, 'y')});
                registry_.writeValue(kRoot, "Software\\Vendor", kView, "3", {kRegString, "short"});
            }
        }
        sleepMilliseconds(3 + round % 10);
        kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        RegistryValue value;
        ASSERT_EQ(registry_.readValue(kRoot, "Software\\Vendor", kView, "3", value), kRegOk);
        EXPECT_TRUE(value.data == "short" || value.data == std::string(9000, 'y') ||
                    value.data == std::string(200, 'x'));
    }
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(databaseFile().c_str(), &connection), SQLITE_OK);
    std::string verdict;
    const auto collect = [](void* out, int, char** columns, char**) {
        *static_cast<std::string*>(out) += columns[0];
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(connection, "PRAGMA integrity_check", collect, &verdict, nullptr), SQLITE_OK);
    sqlite3_close(connection);
    EXPECT_EQ(verdict, "ok");
}

TEST_F(SqliteRegistryTest, TwoProcessesLoseNothing) {
    fill();
    constexpr int kEach = 40;
    std::vector<pid_t> children;
    for (const char* prefix : {"one", "two"}) {
        const pid_t child = fork();
        if (child == 0) {
            int failures = 0;
            for (int i = 0; i < kEach; ++i) {
                int created = 0;
                const std::string key = "Shared\\" + std::string(prefix) + std::to_string(i);
                failures += registry_.createKey(kRoot, key.c_str(), kView, created) == kRegOk ? 0 : 1;
            }
            _exit(failures);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    std::vector<std::string> names;
    ASSERT_EQ(registry_.listKeys(kRoot, "Shared", kView, names), kRegOk);
    EXPECT_EQ(names.size(), 2U * kEach);
}

TEST_F(SqliteRegistryTest, AFirstUseByTwoProcessesMakesOneRegistry) {
    std::vector<pid_t> children;
    for (const char* key : {"one", "two", "three"}) {
        const pid_t child = fork();
        if (child == 0) {
            int created = 0;
            _exit(registry_.createKey(kRoot, key, kView, created) == kRegOk ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    std::vector<std::string> names;
    ASSERT_EQ(registry_.listKeys(kRoot, "", kView, names), kRegOk);
    EXPECT_THAT(names, testing::ElementsAre("one", "three", "two"));
}

TEST_F(SqliteRegistryTest, AStateDirectoryThatCannotBeMadeIsRefused) {
    writeTestFile(directory_.file("deep"), "a file in the way");
    int created = 77;
    EXPECT_EQ(registry_.createKey(kRoot, "a", kView, created), kRegAccessDenied);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(registry_.testKey(kRoot, "a", kView), kRegNotFound);
}

}  // namespace
