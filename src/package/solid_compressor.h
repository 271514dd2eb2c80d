#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "package/solid_format.h"
#include "support/thread_manager.h"

class PStream;

// Collects a blob and makes a solid stream from it. Order of calls: init, addData as often as needed,
// compress.
class SolidCompressor {
public:
    enum class Result : int {
        kDone = 0,
        kOutOfMemory = -1,
        kBadParameter = -2,  // of init and compress: the number of stripes; of addData: a blob above 1 GiB
        kNoThreads = -3,
        kWriteFailed = -4,
        kStripeFailed = -5,
    };

    SolidCompressor() = default;
    SolidCompressor(const SolidCompressor&) = delete;
    SolidCompressor& operator=(const SolidCompressor&) = delete;
    virtual ~SolidCompressor() = default;

    // `stripeCount` is 1 to 256; `compressionLevel` is the codec's, 1 to 9 for zlib.
    virtual Result init(std::int32_t stripeCount, std::int32_t compressionLevel) = 0;
    // Appends `size` bytes to the blob.
    virtual Result addData(const void* data, std::int32_t size) = 0;
    // Returns the stream as one new block. Sizes are in bytes. After a failure the block is null and the
    // sizes are 0.
    virtual Result compress(std::unique_ptr<unsigned char[]>& outStream, std::int32_t& outStreamSize,
                            std::int32_t& outUncompressedSize) = 0;
};

// Holds the blob and the parameters.
class CommonSolidCompressor : public SolidCompressor {
public:
    static constexpr std::int32_t kFirstCapacity = 0x400000;
    static constexpr std::int32_t kMaxBlobSize = 0x40000000;

    CommonSolidCompressor();
    Result init(std::int32_t stripeCount, std::int32_t compressionLevel) override;
    Result addData(const void* data, std::int32_t size) override;

    std::int32_t blobSize() const { return blobSize_; }
    // What was added so far; valid until the next addData.
    const unsigned char* blob() const { return blob_.get(); }
    // Replaces bytes that were added before; all must be within the blob. Several threads may do so at once
    // if they replace different bytes.
    void overwrite(std::int32_t position, const void* data, std::int32_t size);

protected:
    std::int32_t stripeCount() const { return stripeCount_; }
    std::int32_t compressionLevel() const { return compressionLevel_; }

private:
    struct Free {
        void operator()(unsigned char* block) const;
    };

    // From malloc, so that it can grow in place.
    std::unique_ptr<unsigned char, Free> blob_;
    std::int32_t blobCapacity_ = 0;
    std::int32_t blobSize_ = 0;
    std::int32_t stripeCount_ = 0;
    std::int32_t compressionLevel_ = 0;
};

// Cuts the blob into stripes of equal size and compresses them in parallel, one thread for each.
class StripedSolidCompressor : public CommonSolidCompressor {
public:
    // Compresses one stripe into `inOutSize` bytes of memory and stores the size delivered. Returns 0 or the
    // code of the codec. Called by several threads at once.
    virtual int compressStripe(unsigned char* destination, std::uint32_t& inOutSize,
                               const unsigned char* source, std::uint32_t sourceSize) = 0;

    // Compresses the stripes and keeps them in this object; the block is null and the sizes are 0.
    Result compress(std::unique_ptr<unsigned char[]>& outStream, std::int32_t& outStreamSize,
                    std::int32_t& outUncompressedSize) override;

    // Receives the number of compressed bytes; borrowed, may be null. A cancelled run gives kStripeFailed.
    void setProgress(OUtils::ThreadProgress* progress) { progress_ = progress; }
    void setThreads(const OUtils::ThreadSettings& threads) { threads_ = threads; }

protected:
    Result compressStripes();
    const std::vector<SolidChunk>& stripes() const { return stripes_; }
    std::vector<SolidChunk>& stripes() { return stripes_; }
    std::vector<std::unique_ptr<unsigned char[]>>& stripeOutputs() { return stripeOutputs_; }

private:
    friend class StripedCompressWorker;

    void layOutStripes();
    Result reportFailures() const;

    std::vector<SolidChunk> stripes_;
    std::vector<std::unique_ptr<unsigned char[]>> stripeOutputs_;
    OUtils::ThreadProgress* progress_ = nullptr;
    OUtils::ThreadSettings threads_;
};

// The thread procedure: each thread compresses the stripe of its own index and touches no other.
class StripedCompressWorker : public OUtils::MultiThreaded {
public:
    explicit StripedCompressWorker(StripedSolidCompressor& owner) : owner_(owner) {}
    void run(OUtils::SharedRunState& sharedState, OUtils::ThreadState& results, int threadIndex,
             int threadCount) override;

private:
    StripedSolidCompressor& owner_;
};

// Compresses with zlib and writes the stream, which depends only on the blob, the number of stripes and the
// level.
class ZlibSolidCompressor : public StripedSolidCompressor {
public:
    int compressStripe(unsigned char* destination, std::uint32_t& inOutSize, const unsigned char* source,
                       std::uint32_t sourceSize) override;
    Result compress(std::unique_ptr<unsigned char[]>& outStream, std::int32_t& outStreamSize,
                    std::int32_t& outUncompressedSize) override;

    // The same, written to `out` piece by piece, so that the stream isn't in memory a second time.
    // kWriteFailed when `out` fails; it may then hold a part of the stream.
    Result compressTo(PStream& out, std::int32_t& outStreamSize, std::int32_t& outUncompressedSize);

private:
    std::int64_t layOutStream();
    std::vector<unsigned char> encodeHeader() const;
};
