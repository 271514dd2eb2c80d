#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "package/package_checksum.h"
#include "package/solid_compressor.h"

// A file to pack.
struct PackageFile {
    std::string path;        // where it is now
    std::string name;        // the base name that it has in the package, at most 299 bytes
    std::string alias;       // its key, at most 275 bytes, different from all others
    std::int64_t size = -1;  // in bytes; -1 when it isn't known yet
    // What is packed instead of the file's content, which isn't read then; null for the file itself.
    std::shared_ptr<const std::string> content = nullptr;
};

struct PackageOptions {
    // The bare executable image to put before the payload; empty for a package in a file of its own, which
    // has no trailer either.
    std::string imagePath;
    // Makes of the bare image, once it has been checked, the one that is written; none leaves it as it is.
    // Throws InstallerError where it can't.
    std::function<std::string(std::string image)> finishImage;
    // 1 to 256; 0 takes a number that depends on the size of the payload alone.
    std::int32_t stripes = 0;
    OUtils::ThreadSettings threads;  // of the hashing and the compression
    std::int32_t level = 9;          // 1 to 9
    // An image that doesn't know version 2 gets version 1 in any case.
    ChecksumVersion checksum = ChecksumVersion::kVersion2;
};

struct PackageTotals {
    std::int64_t fileCount = 0;
    std::int64_t payloadSize = 0;  // of all files, in bytes
    std::int64_t packageSize = 0;
    std::int32_t stripes = 0;
};

// Called now and then on the calling thread: what is being done, and how much of it, 0 to 100.
using PackageProgress = std::function<void(std::string_view step, int percent)>;

// Makes packages. The same files, options and image give the same bytes on every machine. A failure is thrown
// as InstallerError with one line that says what to do; the output is then as it was before.
class PackageWriter {
public:
    // The most bytes of a name, of an alias, and of the cabinet with all headers and payloads.
    static constexpr std::size_t kMaxNameLength = 299;
    static constexpr std::size_t kMaxAliasLength = 275;
    static constexpr std::int64_t kMaxCabinetSize = CommonSolidCompressor::kMaxBlobSize;

    // `files` is borrowed.
    explicit PackageWriter(platform::FileSystem& files) : files_(files) {}
    void setProgress(PackageProgress progress) { progress_ = std::move(progress); }

    // Packs the files in the given order. All limits are checked before anything is written; the output
    // appears under its name only when it is complete.
    PackageTotals write(const std::vector<PackageFile>& entries, const PackageOptions& options,
                        const std::string& outputPath);

    // The number of stripes for a cabinet of this size, unless another one is asked for.
    static std::int32_t defaultStripes(std::int64_t cabinetSize);
    // True for the name of an image file (PNG, JPEG).
    static bool isImageName(std::string_view name);

private:
    struct Job;

    void checkEntries(const std::vector<PackageFile>& entries, const std::string& outputPath, Job& job) const;
    void loadImage(const PackageOptions& options, Job& job) const;
    void fillCabinet(const std::vector<PackageFile>& entries, Job& job);
    void addEntry(const PackageFile& entry, std::int64_t size, Job& job);
    void addFileContent(const PackageFile& entry, std::int64_t size, Job& job);
    void hashEntries(Job& job) const;
    void writePieces(const std::string& path, Job& job);
    bool compressTo(PFileStream& out, Job& job);
    void finishOutput(const PackageOptions& options, const std::string& path, const Job& job);
    void report(std::string_view step, std::int64_t done, std::int64_t total);

    platform::FileSystem& files_;
    PackageProgress progress_;
    std::string lastStep_;
    int lastPercent_ = -1;
};
