#include "packager/package_file_reader.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "package/image_bytes.h"
#include "platform/error_text.h"
#include "platform/memory/memory_file_system.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

TEST(PackageFileReader, FindsThePayloadAfterLargeImages) {
    // The section table is at the end of the ELF image, far after what is read first.
    const std::string cabinet = entry("a", "text") + endRecord();
    for (const std::string& image : {elfImage(installerData() + std::string(1000000, 'c')),
                                     peImage(installerData() + std::string(1000000, 'c')), std::string()}) {
        MemoryFileSystem files;
        std::string stamped = image;
        stampPackageOffset(stamped, static_cast<std::uint32_t>(image.size()));
        files.addFile("/p", stamped + leadBlock(4, 1) + solidStream({cabinet}) + std::string(500000, 's'));
        PackageFileReader reader(files);
        reader.locate("/p");
        EXPECT_EQ(reader.offset(), static_cast<std::int64_t>(image.size()));
        EXPECT_EQ(reader.hasImage(), !image.empty());
        EXPECT_EQ(reader.leadTotals().uncompressedSize, 4U);
        EXPECT_EQ(reader.leadTotals().storedSize, 4U);
        EXPECT_EQ(reader.leadTotals().entryCount, 1U);
        EXPECT_EQ(reader.stampedOffset().has_value(), !image.empty());
        EXPECT_EQ(reader.stampedOffset().value_or(0), image.size());
        reader.load();
        EXPECT_EQ(reader.cabinet().getCount(), 1);
        EXPECT_TRUE(hasRightDigest(reader.cabinet(), 0));
        EXPECT_FALSE(hasRightDigest(reader.cabinet(), 1));
    }
}

void read(MemoryFileSystem& files) {
    PackageFileReader reader(files);
    reader.locate("/p");
    reader.load();
}

TEST(PackageFileReader, ReportsAFailedRead) {
    MemoryFileSystem files;
    files.addFile("/p", package(endRecord()));
    for (int n = 1; n <= 3; ++n) {
        files.failAt(MemoryFileSystem::Operation::kRead, "/p", n);
        EXPECT_THROW(read(files), InstallerError) << n;
        files.clearFaults();
    }
    read(files);
}

TEST(DigestText, IsHexadecimal) {
    Md5Digest digest{};
    digest[0] = 0x0F;
    digest[15] = 0xA0;
    EXPECT_EQ(digestText(digest), "0f0000000000000000000000000000a0");
}

TEST(PackageFileReader, SaysWhyAPackageCanNotBeRead) {
    MemoryFileSystem files;
    PackageFileReader reader(files);
    try {
        reader.locate("/none");
        FAIL();
    } catch (const InstallerError& error) {
        EXPECT_EQ(error.what(),
                  "/none: the package can't be read: " + platform::errorText(MemoryFileSystem::kNotFound));
    }
    files.addFile("/p", leadBlock(4, 1) + solidStream({entry("a", "text") + endRecord()}));
    reader.locate("/p");
    files.removeFile("/p");
    try {
        reader.load();
        FAIL();
    } catch (const InstallerError& error) {
        EXPECT_EQ(error.what(),
                  "/p: the package can't be read: " + platform::errorText(MemoryFileSystem::kNotFound));
    }
}

}  // namespace
