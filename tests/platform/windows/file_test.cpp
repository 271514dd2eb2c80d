#include "platform/windows/file.h"

#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"

namespace {

using platform::Origin;
using platform::WindowsFile;

HANDLE create(const std::string& path, DWORD access) {
    return CreateFileW(platform::systemPath(path.c_str()).c_str(), access, 0, nullptr, OPEN_ALWAYS, 0,
                       nullptr);
}

TEST(WindowsFile, MovesInFilesOverFourGigabytes) {
    const TemporaryDirectory directory;
    WindowsFile file(create(directory.file("large"), GENERIC_READ | GENERIC_WRITE));
    const std::int64_t large = (std::int64_t{1} << 32) + 5;
    std::int64_t position = 0;
    ASSERT_EQ(file.seek(large, Origin::kStart, position), 0);
    EXPECT_EQ(position, large);
    EXPECT_EQ(file.truncateHere(), 0);
    EXPECT_EQ(file.size(), large);
    EXPECT_EQ(file.seek(-2, Origin::kEnd, position), 0);
    EXPECT_EQ(position, large - 2);
    EXPECT_EQ(file.truncateHere(), 0);
    EXPECT_EQ(file.size(), large - 2);
}

TEST(WindowsFile, KeepsThePositionThatTheCallerKnowsAfterAFailure) {
    const TemporaryDirectory directory;
    WindowsFile file(create(directory.file("f"), GENERIC_READ | GENERIC_WRITE));
    std::int64_t position = 77;
    EXPECT_EQ(file.seek(-1, Origin::kStart, position), ERROR_NEGATIVE_SEEK);
    EXPECT_EQ(position, 77);
}

TEST(WindowsFile, RefusesWhatItsAccessDoesNotAllow) {
    const TemporaryDirectory directory;
    writeTestFile(directory.file("f"), "abc");
    WindowsFile file(create(directory.file("f"), GENERIC_READ));
    std::uint32_t done = 9;
    EXPECT_EQ(file.write("x", 1, done), ERROR_ACCESS_DENIED);
    EXPECT_EQ(done, 0U);
    EXPECT_NE(file.truncateHere(), 0);
}

TEST(WindowsFile, FailsInEveryOperationOnceClosed) {
    const TemporaryDirectory directory;
    WindowsFile file(create(directory.file("f"), GENERIC_READ | GENERIC_WRITE));
    EXPECT_EQ(file.close(), 0);
    std::uint32_t done = 9;
    std::int64_t position = 0;
    char buffer[4];
    EXPECT_EQ(file.close(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(file.read(buffer, 4, done), ERROR_INVALID_HANDLE);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(file.write("x", 1, done), ERROR_INVALID_HANDLE);
    EXPECT_NE(file.seek(0, Origin::kStart, position), 0);
    EXPECT_EQ(file.size(), -1);
    EXPECT_NE(file.flush(), 0);
}

}  // namespace
