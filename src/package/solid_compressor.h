#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "package/solid_format.h"
#include "support/thread_manager.h"

class PConsole;
class PStream;

// Collects a blob and makes a solid stream of it. Order of calls: init, addData as often as needed, compress.
class SolidCompressor {
public:
    enum Result : int {
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
    virtual int init(std::int32_t stripeCount, std::int32_t compressionLevel) = 0;
    virtual void setConsole(PConsole*) {}
    // Appends `size` bytes to the blob.
    virtual int addData(const void* data, std::int32_t size) = 0;
    // Makes the stream as one new block of the caller's. Sizes are in bytes. After a failure nothing is
    // stored.
    virtual int compress(std::unique_ptr<unsigned char[]>& outStream, std::int32_t& outStreamSize,
                         std::int32_t& outUncompressedSize) = 0;
};

// Holds the blob and the parameters.
class CommonSolidCompressor : public SolidCompressor {
public:
    static constexpr std::int32_t kFirstCapacity = 0x400000;
    static constexpr std::int32_t kMaxBlobSize = 0x40000000;

    CommonSolidCompressor();
    int init(std::int32_t stripeCount, std::int32_t compressionLevel) override;
    int addData(const void* data, std::int32_t size) override;

    std::int32_t blobSize() const { return blobSize_; }
    // What was added so far; valid until the next addData.
    const unsigned char* blob() const { return blob_.get(); }
    // Replaces bytes that were added before; they must lie within the blob. Threads may replace different
    // ones.
    void overwrite(std::int32_t position, const void* data, std::int32_t size);

protected:
    std::int32_t stripeCount() const { return stripeCount_; }
    std::int32_t compressionLevel() const { return compressionLevel_; }

private:
    struct Free {
        void operator()(unsigned char* block) const;
    };

    // From malloc, so that it can grow where it stands.
    std::unique_ptr<unsigned char, Free> blob_;
    std::int32_t blobCapacity_ = 0;
    std::int32_t blobSize_ = 0;
    std::int32_t stripeCount_ = 0;
    std::int32_t compressionLevel_ = 0;
};

// Cuts the blob into stripes of equal size and compresses them side by side, one thread for each.
class StripedSolidCompressor : public CommonSolidCompressor {
public:
    // Compresses one stripe into the room of `inOutSize` bytes and stores the size delivered. 0 or the
    // codec's code. Called by several threads at once.
    virtual int compressStripe(unsigned char* destination, std::uint32_t& inOutSize,
                               const unsigned char* source, std::uint32_t sourceSize) = 0;

    // Makes the stripes and leaves them in this object; null blocks and sizes of 0 come out.
    int compress(std::unique_ptr<unsigned char[]>& outStream, std::int32_t& outStreamSize,
                 std::int32_t& outUncompressedSize) override;

    // Told the bytes that are compressed; borrowed, may be null. A cancelled run gives kStripeFailed.
    void setProgress(OUtils::ThreadProgress* progress) { progress_ = progress; }
    void setThreads(const OUtils::ThreadSettings& threads) { threads_ = threads; }

protected:
    int compressStripes();
    const std::vector<SolidChunk>& stripes() const { return stripes_; }
    std::vector<SolidChunk>& stripes() { return stripes_; }
    std::vector<std::unique_ptr<unsigned char[]>>& stripeOutputs() { return stripeOutputs_; }

private:
    friend class StripedCompressWorker;

    void layOutStripes();
    int reportFailures() const;

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

// Compresses with zlib and writes the stream. The stream depends on the blob, the number of stripes and the
// level alone.
class ZlibSolidCompressor : public StripedSolidCompressor {
public:
    int compressStripe(unsigned char* destination, std::uint32_t& inOutSize, const unsigned char* source,
                       std::uint32_t sourceSize) override;
    int compress(std::unique_ptr<unsigned char[]>& outStream, std::int32_t& outStreamSize,
                 std::int32_t& outUncompressedSize) override;

    // The same, written to `out` piece by piece, so that the stream needn't stand in memory a second time.
    // kWriteFailed when `out` fails; it may hold a part then.
    int compressTo(PStream& out, std::int32_t& outStreamSize, std::int32_t& outUncompressedSize);

private:
    std::int64_t layOutStream();
    std::vector<unsigned char> encodeHeader() const;
};
