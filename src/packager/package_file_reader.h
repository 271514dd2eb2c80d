#pragma once

#include <cstdint>
#include <string>

#include "package/cabinet.h"
#include "package/executable_image.h"

// A finished package, opened for a look inside.
class PackageFileReader {
public:
    explicit PackageFileReader(platform::FileSystem& files) : files_(files), cabinet_(files) {}

    // Finds the payload. Throws InstallerError with one line when the file is no package.
    void locate(const std::string& path);
    // Loads the cabinet of the package that was located. Throws InstallerError.
    void load();

    const Cabinet& cabinet() const { return cabinet_; }
    std::int64_t offset() const { return offset_; }  // of the lead block
    // kNone for a package in a file of its own, which has no checksum either.
    ImageKind imageKind() const { return imageKind_; }
    bool hasImage() const { return imageKind_ != ImageKind::kNone; }
    // The numbers that the lead block tells for the use of tools.
    struct LeadTotals {
        std::uint32_t uncompressedSize = 0;
        std::uint32_t storedSize = 0;
        std::uint32_t entryCount = 0;
    };
    const LeadTotals& leadTotals() const { return totals_; }
    // The offset that is stamped into the image. False when there is none.
    bool stampedOffset(std::uint32_t& outOffset) const;

private:
    void readHead(PFileStream& stream, std::size_t size);
    void findImageEnd(PFileStream& stream);
    bool readLeadBlock(PFileStream& stream);

    platform::FileSystem& files_;
    Cabinet cabinet_;
    std::string path_;
    std::string head_;  // the file's start, as far as it was needed: the image when there is one
    std::int64_t fileSize_ = 0;
    std::int64_t offset_ = 0;
    ImageKind imageKind_ = ImageKind::kNone;
    LeadTotals totals_;
};

// True when the MD5 of the entry's content is the one that is stored with it.
bool hasRightDigest(const Cabinet& cabinet, std::int32_t index);
// A digest as 32 hexadecimal digits.
std::string digestText(const Md5Digest& digest);
