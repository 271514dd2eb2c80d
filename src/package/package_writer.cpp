#include "package/package_writer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <utility>

#include "base/errors.h"
#include "base/text_functions.h"
#include "package/cabinet_format.h"
#include "package/executable_image.h"
#include "package/little_endian.h"
#include "package/package_layout.h"
#include "package/package_stamp.h"
#include "support/utilities.h"

namespace {

constexpr std::int64_t kBytesPerStripe = 4 * 1024 * 1024;
constexpr std::int32_t kMostDefaultStripes = 32;
constexpr std::uint32_t kReadBlockSize = 1024 * 1024;

constexpr std::string_view kSolidMark = "SupportsSolidZlib";
constexpr std::string_view kSigningMark = "SupportsSignedInstallers";

[[noreturn]] void fail(const std::string& line) {
    throw InstallerError("%s", line.c_str());
}

using EntryHeader = std::array<unsigned char, CabinetFormat::kHeaderSize>;

// Without the digest.
EntryHeader encodeHeader(const PackageFile& entry, std::int64_t size) {
    EntryHeader header{};
    const auto size32 = static_cast<std::uint32_t>(size);
    LittleEndian::writeUnsigned(header.data() + CabinetFormat::kMagicOffset, CabinetFormat::kEntryMagic);
    LittleEndian::writeUnsigned(header.data() + CabinetFormat::kFileSizeOffset, size32);
    LittleEndian::writeUnsigned(header.data() + CabinetFormat::kStoredSizeOffset, size32);
    LittleEndian::writeUnsigned(
        header.data() + CabinetFormat::kFlagsOffset,
        PackageWriter::isImageName(entry.name) ? CabinetFormat::kImageFile : CabinetFormat::kPlainFile);
    std::memcpy(header.data() + CabinetFormat::kNameOffset, entry.name.data(), entry.name.size());
    std::memcpy(header.data() + CabinetFormat::kAliasOffset, entry.alias.data(), entry.alias.size());
    return header;
}

using LeadBlock = std::array<unsigned char, PackageLayout::kLeadBlockSize>;

LeadBlock encodeLeadBlock(const PackageTotals& totals) {
    LeadBlock lead{};
    const auto put = [&](std::size_t offset, std::int64_t value) {
        LittleEndian::writeUnsigned(lead.data() + offset, static_cast<std::uint32_t>(value));
    };
    put(PackageLayout::kMagic0Offset, PackageLayout::kMagic0);
    put(PackageLayout::kMagic1Offset, PackageLayout::kMagic1);
    put(PackageLayout::kMagic2Offset, PackageLayout::kMagic2);
    put(PackageLayout::kTotalUncompressedSizeOffset, totals.payloadSize);
    put(PackageLayout::kTotalStoredSizeOffset, totals.payloadSize);
    put(PackageLayout::kEntryCountOffset, totals.fileCount);
    return lead;
}

void checkTexts(const PackageFile& entry) {
    const bool hasZero =
        entry.name.find('\0') != std::string::npos || entry.alias.find('\0') != std::string::npos;
    if (entry.name.empty() || entry.alias.empty() || hasZero) {
        fail(entry.path + ": a file needs a name and an alias");
    }
    if (entry.name.size() > PackageWriter::kMaxNameLength) {
        fail(entry.path + ": the file name has " + std::to_string(entry.name.size()) + " bytes, at most " +
             std::to_string(PackageWriter::kMaxNameLength) + " are possible: shorten it");
    }
    if (entry.alias.size() > PackageWriter::kMaxAliasLength) {
        fail(entry.path + ": the alias has " + std::to_string(entry.alias.size()) + " bytes, at most " +
             std::to_string(PackageWriter::kMaxAliasLength) + " are possible: give the file an Alias");
    }
}

// -1 when there is no such file.
std::int64_t sizeOf(const PackageFile& entry, PFileStream& lookUp) {
    if (entry.content != nullptr) {
        return static_cast<std::int64_t>(entry.content->size());
    }
    return entry.size >= 0 ? entry.size : lookUp.getFileSize(entry.path);
}

void checkImage(const std::string& path, ImageProblem problem) {
    switch (problem) {
        case ImageProblem::kNotExecutable:
            fail(path + ": this is not an executable image: give the bare installer");
        case ImageProblem::kCut:
            fail(path + ": this image is incomplete: build it or copy it again");
        case ImageProblem::kDataAfter:
            fail(path +
                 ": there is data after this image, so it is a package or signed: give the bare, "
                 "unsigned installer");
        case ImageProblem::kNone:
            return;
    }
}

// Writes the digests of the entries into their headers; each thread takes the next entry that is left.
class HashWorker : public OUtils::MultiThreaded {
public:
    HashWorker(CommonSolidCompressor& cabinet, const std::vector<std::int32_t>& positions,
               const std::vector<std::int64_t>& sizes)
        : cabinet_(cabinet), positions_(positions), sizes_(sizes) {}

    void run(OUtils::SharedRunState&, OUtils::ThreadState&, int, int) override {
        for (std::size_t i = next_++; i < positions_.size(); i = next_++) {
            const unsigned char* content = cabinet_.blob() + positions_[i] + CabinetFormat::kHeaderSize;
            const Md5Digest digest = md5Of(content, static_cast<std::size_t>(sizes_[i]));
            cabinet_.overwrite(positions_[i] + static_cast<std::int32_t>(CabinetFormat::kDigestOffset),
                               digest.data(), static_cast<std::int32_t>(digest.size()));
        }
    }

private:
    CommonSolidCompressor& cabinet_;
    const std::vector<std::int32_t>& positions_;
    const std::vector<std::int64_t>& sizes_;
    std::atomic<std::size_t> next_{0};
};

// Shows the compressed bytes as they grow.
class CompressionProgress : public OUtils::ThreadProgress {
public:
    explicit CompressionProgress(std::function<void(std::int64_t)> report) : report_(std::move(report)) {}
    void setText(const char*) override {}
    void setProgress(std::int64_t done) override { report_(done); }
    std::int32_t update() override { return 0; }

private:
    std::function<void(std::int64_t)> report_;
};

void checkWriting(const std::string& path, int status) {
    if (status != 0) {
        fail(path + " can't be written: " + OUtils::writingErrorText(status) +
             ": check the directory, its rights and the free space");
    }
}

// The output under another name. It is removed unless it is published.
class TemporaryOutput {
public:
    TemporaryOutput(platform::FileSystem& files, const std::string& finalPath)
        : files_(files), finalPath_(finalPath), path_(finalPath + ".part") {
        const platform::PathKind present = files.kindOf(finalPath);
        const bool canBeReplaced =
            present != platform::PathKind::kDirectory && present != platform::PathKind::kOther;
        PFileStream stream(files);
        int status = canBeReplaced ? stream.createNew(path_, false) : -1;
        for (int i = 1; status != 0 && canBeReplaced && files.exists(path_); ++i) {
            path_ = finalPath + ".part" + std::to_string(i);
            status = stream.createNew(path_, false);
        }
        checkWriting(finalPath, status);
    }
    TemporaryOutput(const TemporaryOutput&) = delete;
    TemporaryOutput& operator=(const TemporaryOutput&) = delete;
    ~TemporaryOutput() {
        if (!isPublished_) {
            files_.removeFile(path_);
        }
    }

    const std::string& path() const { return path_; }
    void publish() {
        checkWriting(finalPath_, files_.replaceFile(path_, finalPath_));
        isPublished_ = true;
    }

private:
    platform::FileSystem& files_;
    std::string finalPath_;
    std::string path_;
    bool isPublished_ = false;
};

void checkCompression(SolidCompressor::Result result) {
    using Result = SolidCompressor::Result;
    if (result == Result::kOutOfMemory || result == Result::kStripeFailed) {
        fail("not enough memory to compress the files");
    }
    if (result != Result::kDone) {
        fail("the files can't be compressed (" + std::to_string(static_cast<int>(result)) + ")");
    }
}

}  // namespace

// The state of one run.
struct PackageWriter::Job {
    std::vector<std::int64_t> sizes;      // of the entries, in their order
    std::vector<std::int32_t> positions;  // of their headers in the cabinet
    std::int64_t cabinetSize = 0;
    std::string image;
    ChecksumVersion checksum = ChecksumVersion::kVersion2;
    OUtils::ThreadSettings threads;
    ZlibSolidCompressor compressor;
    std::vector<unsigned char> block;
    PackageTotals totals;
};

std::int32_t PackageWriter::defaultStripes(std::int64_t cabinetSize) {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(cabinetSize / kBytesPerStripe, 1, kMostDefaultStripes));
}

bool PackageWriter::isImageName(std::string_view name) {
    const std::string lower = OUtils::toLowerAscii(name);
    return lower.ends_with(".png") || lower.ends_with(".jpg") || lower.ends_with(".jpeg");
}

void PackageWriter::report(std::string_view step, std::int64_t done, std::int64_t total) {
    const int percent = total <= 0 ? 100 : static_cast<int>(done * 100 / total);
    if (progress_ && (percent != lastPercent_ || step != lastStep_)) {
        lastStep_ = step;
        lastPercent_ = percent;
        progress_(step, percent);
    }
}

PackageTotals PackageWriter::write(const std::vector<PackageFile>& entries, const PackageOptions& options,
                                   const std::string& outputPath) {
    if (options.stripes < 0 || options.stripes > SolidFormat::kMaxChunks) {
        fail(std::to_string(options.stripes) + " stripes are not possible: give 1 to " +
             std::to_string(SolidFormat::kMaxChunks));
    }
    if (options.level < 1 || options.level > 9) {
        fail("level " + std::to_string(options.level) + " is not possible: give 1 to 9");
    }
    Job job;
    if (options.imagePath == outputPath) {
        fail(outputPath + " is the image: choose another output");
    }
    checkEntries(entries, outputPath, job);
    loadImage(options, job);
    job.totals.stripes = options.stripes == 0 ? defaultStripes(job.cabinetSize) : options.stripes;
    job.threads = options.threads;
    job.compressor.setThreads(options.threads);
    checkCompression(job.compressor.init(job.totals.stripes, options.level));
    TemporaryOutput output(files_, outputPath);  // before the long work: can anything be written there?
    fillCabinet(entries, job);
    hashEntries(job);
    writePieces(output.path(), job);
    finishOutput(options, output.path(), job);
    job.totals.packageSize = PFileStream(files_).getFileSize(output.path());
    output.publish();
    return job.totals;
}

void PackageWriter::checkEntries(const std::vector<PackageFile>& entries, const std::string& outputPath,
                                 Job& job) const {
    std::unordered_map<std::string_view, const PackageFile*> byAlias;
    job.cabinetSize = CabinetFormat::kHeaderSize;  // the end record
    PFileStream lookUp(files_);
    for (const PackageFile& entry : entries) {
        checkTexts(entry);
        if (entry.path == outputPath) {
            fail(outputPath + " is to be packed itself: choose another output");
        }
        const auto [known, isNew] = byAlias.emplace(entry.alias, &entry);
        if (!isNew) {
            fail("the alias \"" + entry.alias + "\" stands for both " + known->second->path + " and " +
                 entry.path + ": give one of them another Alias");
        }
        const std::int64_t size = sizeOf(entry, lookUp);
        if (size < 0) {
            fail(entry.path + ": no such file");
        }
        job.sizes.push_back(size);
        job.totals.payloadSize += size;
        job.cabinetSize +=
            static_cast<std::int64_t>(CabinetFormat::kHeaderSize) + std::min(size, kMaxCabinetSize);
        if (size > kMaxCabinetSize || job.cabinetSize > kMaxCabinetSize) {
            fail(entry.path + ": with this file the package holds more than " +
                 std::to_string(kMaxCabinetSize) +
                 " bytes, which is the limit: leave files out or make two packages");
        }
    }
    job.totals.fileCount = static_cast<std::int64_t>(entries.size());
}

void PackageWriter::loadImage(const PackageOptions& options, Job& job) const {
    if (options.imagePath.empty()) {
        return;
    }
    const std::string& path = options.imagePath;
    const int status = OUtils::readWholeFile(path, job.image, files_);
    if (status != 0) {
        fail(path + ": the image can't be read: " + OUtils::readingErrorText(status));
    }
    checkImage(path, measureExecutableImage(job.image).problem);
    if (job.image.find(kSolidMark) == std::string::npos) {
        fail(path + ": this program can't install such packages: give the bare installer");
    }
    if (options.finishImage) {
        job.image = options.finishImage(std::move(job.image));
    }
    const auto offset = static_cast<std::uint32_t>(job.image.size());
    if (stampPackageOffset(job.image, offset) != StampResult::kStamped) {
        fail(path +
             ": this image has no place, or several, for the package's offset: give the bare installer");
    }
    const bool knowsVersion2 = job.image.find(kSigningMark) != std::string::npos;
    job.checksum = knowsVersion2 ? options.checksum : ChecksumVersion::kVersion1;
}

void PackageWriter::fillCabinet(const std::vector<PackageFile>& entries, Job& job) {
    std::int64_t done = 0;
    job.block.resize(kReadBlockSize);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        report("Reading files", done, job.totals.payloadSize);
        addEntry(entries[i], job.sizes[i], job);
        done += job.sizes[i];
    }
    unsigned char end[CabinetFormat::kHeaderSize] = {};
    LittleEndian::writeUnsigned(end + CabinetFormat::kMagicOffset, CabinetFormat::kEndMagic);
    checkCompression(job.compressor.addData(end, sizeof(end)));
}

// Without the digest, which hashEntries adds.
void PackageWriter::addEntry(const PackageFile& entry, std::int64_t size, Job& job) {
    job.positions.push_back(job.compressor.blobSize());
    const EntryHeader header = encodeHeader(entry, size);
    checkCompression(job.compressor.addData(header.data(), static_cast<std::int32_t>(header.size())));
    if (entry.content == nullptr) {
        addFileContent(entry, size, job);
    } else {
        checkCompression(job.compressor.addData(entry.content->data(), static_cast<std::int32_t>(size)));
    }
}

void PackageWriter::addFileContent(const PackageFile& entry, std::int64_t size, Job& job) {
    PFileStream stream(files_);
    int status = stream.openFile(entry.path, PFileStream::kGenericRead, PFileStream::kShareRead,
                                 PFileStream::kOpenExisting | PFileStream::kSequential);
    std::int64_t filled = 0;
    std::uint32_t done = 1;
    while (status == 0 && done > 0 && filled <= size) {
        status = stream.read(job.block.data(), kReadBlockSize, done);
        if (status == 0 && filled + done <= size) {
            checkCompression(job.compressor.addData(job.block.data(), static_cast<std::int32_t>(done)));
        }
        filled += done;
    }
    if (status != 0) {
        fail(entry.path + ": the file can't be read: " + OUtils::readingErrorText(status));
    }
    if (filled != size) {
        fail(entry.path + ": the file changed while it was read: try again");
    }
}

// Hashing is done by all processors, like the compression.
void PackageWriter::hashEntries(Job& job) const {
    HashWorker worker(job.compressor, job.positions, job.sizes);
    const OUtils::ThreadManagerPtr threads(OUtils::createThreadManager(job.threads));
    if (threads == nullptr) {
        fail("not enough memory to hash the files");
    }
    threads->runThreads(0, worker);
}

void PackageWriter::finishOutput(const PackageOptions& options, const std::string& path, const Job& job) {
    if (options.imagePath.empty()) {
        return;
    }
    int status = appendInstallerChecksum(path, job.checksum, files_);
    if (status == 0) {
        status = files_.makeExecutable(path);
    }
    checkWriting(path, status);
}

// Image, lead block and stream.
void PackageWriter::writePieces(const std::string& path, Job& job) {
    const LeadBlock lead = encodeLeadBlock(job.totals);
    PFileStream out(files_);
    std::uint32_t written = 0;
    int status = out.openFile(path, PFileStream::kReadWrite, PFileStream::kShareRead,
                              PFileStream::kOpenExisting | PFileStream::kRefuseLinks);  // made empty before
    if (status == 0) {
        status = out.write(job.image.data(), static_cast<std::uint32_t>(job.image.size()), written);
    }
    if (status == 0) {
        status = out.write(lead.data(), static_cast<std::uint32_t>(lead.size()), written);
    }
    if (status == 0 && !compressTo(out, job)) {
        status = static_cast<int>(SolidCompressor::Result::kWriteFailed);
    }
    const int closed = out.close();
    checkWriting(path, status != 0 ? status : closed);
    report("Compressing", job.cabinetSize, job.cabinetSize);
}

// False when the output can't be written; every other failure is thrown.
bool PackageWriter::compressTo(PFileStream& out, Job& job) {
    CompressionProgress progress([&](std::int64_t done) { report("Compressing", done, job.cabinetSize); });
    job.compressor.setProgress(progress_ ? &progress : nullptr);
    std::int32_t streamSize = 0;
    std::int32_t blobSize = 0;
    const SolidCompressor::Result result = job.compressor.compressTo(out, streamSize, blobSize);
    if (result == SolidCompressor::Result::kWriteFailed) {
        return false;
    }
    checkCompression(result);
    return true;
}
