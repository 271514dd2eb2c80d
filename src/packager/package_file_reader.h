#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "package/cabinet.h"
#include "package/executable_image.h"

// Reads a finished package.
class PackageFileReader {
public:
    explicit PackageFileReader(platform::FileSystem& files) : files_(files), cabinet_(files, DebugLog()) {}

    // Finds the payload. Throws InstallerError with one line when the file isn't a package.
    void locate(const std::string& path);
    // Loads the cabinet of the package that locate() found. Throws InstallerError.
    void load();

    const Cabinet& cabinet() const { return cabinet_; }
    std::int64_t offset() const { return offset_; }  // of the lead block
    // kNone for a package in a file of its own, which has no checksum either.
    ImageKind imageKind() const { return imageKind_; }
    bool hasImage() const { return imageKind_ != ImageKind::kNone; }
    // The numbers in the lead block, which are for tools only.
    struct LeadTotals {
        std::uint32_t uncompressedSize = 0;
        std::uint32_t storedSize = 0;
        std::uint32_t entryCount = 0;
    };
    const LeadTotals& leadTotals() const { return totals_; }
    // The offset that is stamped into the image, if there is one.
    std::optional<std::uint32_t> stampedOffset() const;

private:
    void readHead(PFileStream& stream, std::size_t size);
    void findImageEnd(PFileStream& stream);
    bool readLeadBlock(PFileStream& stream);

    platform::FileSystem& files_;
    Cabinet cabinet_;
    std::string path_;
    std::string head_;  // the start of the file as far as it was needed; all of the image when there is one
    std::int64_t fileSize_ = 0;
    std::int64_t offset_ = 0;
    ImageKind imageKind_ = ImageKind::kNone;
    LeadTotals totals_;
};

// True when the MD5 of the entry's content is the one that is stored with it.
bool hasRightDigest(const Cabinet& cabinet, std::int32_t index);
// A digest as 32 hexadecimal digits.
std::string digestText(const Md5Digest& digest);
