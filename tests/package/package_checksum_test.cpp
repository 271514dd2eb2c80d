#include "package/package_checksum.h"

#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"
#include "package/package_layout.h"
#include "platform/memory/memory_file_system.h"

namespace {

constexpr const char* kPath = "/p/setup";

std::string digestOf(std::string_view data) {
    const Md5Digest digest = md5Of(data.data(), data.size());
    return std::string(reinterpret_cast<const char*>(digest.data()), digest.size());
}

std::string trailer1(const std::string& content) {
    return "MD5SUM: " + digestOf(content);
}

std::string trailer2(const std::string& content) {
    return "v2sum: " +
           digestOf(content.size() > 5000 ? std::string_view(content).substr(5000) : std::string_view());
}

std::string content(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += std::to_string(i) + ",";
    }
    text.resize(size);
    return text;
}

class PackageChecksumTest : public testing::Test {
protected:
    bool verify(const std::string& file) {
        files_.addFile(kPath, file);
        return verifyInstallerChecksum(kPath, files_);
    }
    std::string appended(const std::string& file, ChecksumVersion version) {
        files_.addFile(kPath, file);
        EXPECT_EQ(appendInstallerChecksum(kPath, version, files_), 0);
        return files_.content(kPath);
    }

    MemoryFileSystem files_;
};

TEST_F(PackageChecksumTest, AcceptsBothVersions) {
    const std::string file = content(100000);
    EXPECT_TRUE(verify(file + trailer1(file)));
    EXPECT_TRUE(verify(file + trailer2(file)));
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(PackageChecksumTest, FailsWithoutAFileOrATrailer) {
    EXPECT_FALSE(verifyInstallerChecksum("/p/none", files_));
    EXPECT_FALSE(verify(""));
    EXPECT_FALSE(verify(content(100000)));
}

TEST_F(PackageChecksumTest, FailsForLessThan24BytesWhateverTheyHold) {
    // A version 2 trailer alone has 23 bytes.
    EXPECT_FALSE(verify(trailer2("")));
    EXPECT_EQ(trailer2("").size(), 23U);
    EXPECT_FALSE(verify("M" + trailer2("")));
    EXPECT_FALSE(verify(trailer1("")));  // 24 bytes, but none to hash
    EXPECT_TRUE(verify("x" + trailer1("x")));
}

TEST_F(PackageChecksumTest, FindsTheTrailerInTheLast20000BytesOnly) {
    const std::string file = content(30000);
    EXPECT_TRUE(verify(file + trailer1(file) + std::string(20000 - 24, 's')));
    EXPECT_FALSE(verify(file + trailer1(file) + std::string(20000 - 23, 's')));
    EXPECT_TRUE(verify(file + trailer2(file) + std::string(20000 - 23, 's')));
    EXPECT_FALSE(verify(file + trailer2(file) + std::string(20000 - 22, 's')));
}

TEST_F(PackageChecksumTest, LetsTheLastTagWin) {
    const std::string file = content(6000) + "MD5SUM: " + "v2sum: " + content(100);
    EXPECT_TRUE(verify(file + trailer2(file)));
    const std::string valid = content(6000);
    EXPECT_FALSE(verify(valid + trailer1(valid) + "...v2sum: ..." + std::string(30, 'x')));
    EXPECT_FALSE(verify(valid + trailer1(valid) + "v2sum: "));  // a tag without its digest
}

TEST_F(PackageChecksumTest, FailsWhenTheDigestIsCut) {
    const std::string file = content(6000);
    for (std::size_t cut = 1; cut <= 16; ++cut) {
        const std::string whole = file + trailer2(file);
        EXPECT_FALSE(verify(whole.substr(0, whole.size() - cut))) << cut;
    }
}

TEST_F(PackageChecksumTest, NeedsBytesToHashInVersion2) {
    EXPECT_FALSE(verify(content(5000) + trailer2(content(5000))));
    EXPECT_FALSE(verify(content(100) + trailer2(content(100))));
    EXPECT_TRUE(verify(content(5001) + trailer2(content(5001))));
}

TEST_F(PackageChecksumTest, LeavesTheHeadersOutOfVersion2) {
    const std::string file = content(30000);
    for (const std::size_t place : {0, 60, 4999}) {
        std::string signedFile = file + trailer2(file);
        signedFile[place] ^= 1;
        EXPECT_TRUE(verify(signedFile)) << place;
        std::string changed = file + trailer1(file);
        changed[place] ^= 1;
        EXPECT_FALSE(verify(changed)) << place;
    }
    for (const std::size_t place : {5000, 29999}) {
        std::string changed = file + trailer2(file);
        changed[place] ^= 1;
        EXPECT_FALSE(verify(changed)) << place;
    }
}

TEST_F(PackageChecksumTest, FailsForAnyChangedByteOfTheTrailer) {
    const std::string file = content(6000);
    for (std::size_t i = 0; i < 23; ++i) {
        std::string changed = file + trailer2(file);
        changed[6000 + i] ^= 1;
        EXPECT_FALSE(verify(changed)) << i;
    }
}

TEST_F(PackageChecksumTest, AcceptsASignatureAfterThePadding) {
    const std::string file = content(6001);
    EXPECT_TRUE(verify(file + trailer2(file) + std::string(7, '\0') + std::string(9000, '\x30')));
}

TEST_F(PackageChecksumTest, FailsWhenReadingFails) {
    const std::string file = content(200000);
    files_.addFile(kPath, file + trailer1(file));
    for (int n = 1; n <= 4; ++n) {
        files_.failAt(MemoryFileSystem::Operation::kRead, kPath, n);
        EXPECT_FALSE(verifyInstallerChecksum(kPath, files_)) << n;
        files_.clearFaults();
    }
    EXPECT_TRUE(verifyInstallerChecksum(kPath, files_));
}

TEST_F(PackageChecksumTest, AppendsWhatItAccepts) {
    const std::string file = content(100000);
    EXPECT_EQ(appended(file, ChecksumVersion::kVersion1), file + trailer1(file));
    EXPECT_EQ(appended(file, ChecksumVersion::kVersion2), file + trailer2(file));
    EXPECT_EQ(appended("short", ChecksumVersion::kVersion2), "short" + trailer2("short"));
}

TEST_F(PackageChecksumTest, ReportsTheErrorOfTheCallThatFailed) {
    EXPECT_NE(appendInstallerChecksum("/p/none", ChecksumVersion::kVersion2, files_), 0);
    EXPECT_FALSE(files_.hasFile("/p/none"));
    files_.addFile(kPath, content(6000));
    files_.failAt(MemoryFileSystem::Operation::kRead, kPath, 1, 42);
    EXPECT_EQ(appendInstallerChecksum(kPath, ChecksumVersion::kVersion2, files_), 42);
    files_.clearFaults();
    files_.failAt(MemoryFileSystem::Operation::kOpen, kPath, 2, 43);
    EXPECT_EQ(appendInstallerChecksum(kPath, ChecksumVersion::kVersion2, files_), 43);
    files_.clearFaults();
    files_.setFreeSpace(10);
    EXPECT_NE(appendInstallerChecksum(kPath, ChecksumVersion::kVersion2, files_), 0);
}

TEST(PackageChecksum, WorksOnARealFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("setup");
    writeTestFile(path, content(150000));
    ASSERT_EQ(appendInstallerChecksum(path, ChecksumVersion::kVersion2, platform::systemFileSystem()), 0);
    EXPECT_TRUE(verifyInstallerChecksum(path, platform::systemFileSystem()));
    EXPECT_EQ(readTestFile(path), content(150000) + trailer2(content(150000)));
}

TEST(ChecksumVersionFor, LooksAtTheFirstCharacterOnly) {
    EXPECT_EQ(checksumVersionFor(""), ChecksumVersion::kVersion2);
    EXPECT_EQ(checksumVersionFor("0"), ChecksumVersion::kVersion2);
    EXPECT_EQ(checksumVersionFor("1"), ChecksumVersion::kVersion1);
    EXPECT_EQ(checksumVersionFor("10"), ChecksumVersion::kVersion1);
    EXPECT_EQ(checksumVersionFor(" 1"), ChecksumVersion::kVersion2);
}

}  // namespace
