#include "installer/administrator_test.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

constexpr char kProbe[] = "/opt/test$$$1234ajgtr.tmp";

TEST(AdministratorTest, SucceedsWhereAFileCanBeMadeAndTakesItAwayAgain) {
    MemoryFileSystem files;
    files.addDirectory("/opt");
    EXPECT_TRUE(hasAdministrativePrivileges(files, {"/opt"}));
    EXPECT_TRUE(files.didOperation(std::string("open ") + kProbe));
    EXPECT_FALSE(files.hasFile(kProbe));
}

TEST(AdministratorTest, LeavesAFileThatHasItsName) {
    MemoryFileSystem files;
    files.addFile(kProbe, "mine");
    files.addFile("/victim", "precious");
    files.addLink("/opt/test$$$1234ajgtr1.tmp", "/victim");
    EXPECT_TRUE(hasAdministrativePrivileges(files, {"/opt"}));
    EXPECT_EQ(files.content(kProbe), "mine");
    EXPECT_EQ(files.content("/victim"), "precious");
    EXPECT_EQ(files.allFiles().size(), 3U);
}

TEST(AdministratorTest, FailsWhereNothingCanBeMade) {
    MemoryFileSystem files;
    files.addDirectory("/opt");
    files.setReadOnly("/opt");
    EXPECT_FALSE(hasAdministrativePrivileges(files, {"/opt"}));
}

TEST(AdministratorTest, AsksTheNextDirectoryWhenTheFirstIsMissing) {
    MemoryFileSystem files;
    files.addDirectory("/usr/local");
    EXPECT_TRUE(hasAdministrativePrivileges(files, {"/opt", "/usr/local"}));
}

TEST(AdministratorTest, FailsWithoutADirectory) {
    MemoryFileSystem files;
    EXPECT_FALSE(hasAdministrativePrivileges(files, {}));
}

}  // namespace
