#include "package/solid_compressor.h"

#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "support/p_stream.h"

namespace {

// A worker that fails stores the code of the codec in its record, shifted so that it can't be mistaken for a
// size.
constexpr int kErrorShift = 200;

// Where stripe `index` of `count` begins.
std::int32_t stripeStart(std::int32_t blobSize, std::int32_t index, std::int32_t count) {
    return static_cast<std::int32_t>(static_cast<std::int64_t>(index) * blobSize / count);
}

// Room for data that grows when compressed.
std::uint32_t outputCapacity(std::uint32_t stripeSize) {
    return static_cast<std::uint32_t>(1.1F * static_cast<float>(stripeSize)) + 65536;
}

}  // namespace

void CommonSolidCompressor::Free::operator()(unsigned char* block) const {
    std::free(block);
}

CommonSolidCompressor::CommonSolidCompressor()
    : blob_(static_cast<unsigned char*>(std::malloc(kFirstCapacity))),
      blobCapacity_(blob_ == nullptr ? 0 : kFirstCapacity) {}

SolidCompressor::Result CommonSolidCompressor::init(std::int32_t stripeCount, std::int32_t compressionLevel) {
    if (blob_ == nullptr) {
        return Result::kOutOfMemory;
    }
    stripeCount_ = stripeCount;
    if (stripeCount < 1) {
        return Result::kBadParameter;
    }
    compressionLevel_ = compressionLevel;
    return Result::kDone;
}

SolidCompressor::Result CommonSolidCompressor::addData(const void* data, std::int32_t size) {
    if (blob_ == nullptr || size < 0) {
        return Result::kOutOfMemory;
    }
    const std::int64_t needed = static_cast<std::int64_t>(blobSize_) + size;
    std::int64_t capacity = blobCapacity_;
    while (capacity < needed) {
        capacity *= 2;
    }
    if (capacity > kMaxBlobSize) {
        std::fprintf(stderr, "FATAL ERROR: Uncompressed blob size exceeds supported size of %d B\n",
                     kMaxBlobSize);
        return Result::kBadParameter;
    }
    if (capacity != blobCapacity_) {
        void* grown = std::realloc(blob_.get(), static_cast<std::size_t>(capacity));
        if (grown == nullptr) {
            return Result::kOutOfMemory;
        }
        static_cast<void>(blob_.release());
        blob_.reset(static_cast<unsigned char*>(grown));
        blobCapacity_ = static_cast<std::int32_t>(capacity);
    }
    if (size > 0) {
        std::memcpy(blob_.get() + blobSize_, data, static_cast<std::size_t>(size));
    }
    blobSize_ = static_cast<std::int32_t>(needed);
    return Result::kDone;
}

void CommonSolidCompressor::overwrite(std::int32_t position, const void* data, std::int32_t size) {
    std::memcpy(blob_.get() + position, data, static_cast<std::size_t>(size));
}

SolidCompressor::Result StripedSolidCompressor::compress(std::unique_ptr<unsigned char[]>& outStream,
                                                         std::int32_t& outStreamSize,
                                                         std::int32_t& outUncompressedSize) {
    outStream.reset();
    outStreamSize = 0;
    outUncompressedSize = 0;
    return compressStripes();
}

SolidCompressor::Result StripedSolidCompressor::compressStripes() {
    if (stripeCount() < 1 || stripeCount() > SolidFormat::kMaxChunks) {
        return Result::kBadParameter;  // no reader would accept the stream
    }
    layOutStripes();
    const OUtils::ThreadManagerPtr threads(OUtils::createThreadManager(threads_));
    if (threads == nullptr) {
        return Result::kNoThreads;
    }
    StripedCompressWorker worker(*this);
    threads->runThreads(stripeCount(), worker, progress_, progress_ != nullptr);
    return reportFailures();
}

void StripedSolidCompressor::layOutStripes() {
    const std::int32_t count = stripeCount();
    stripes_.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t start = stripeStart(blobSize(), i, count);
        const std::int32_t end = stripeStart(blobSize(), i + 1, count);
        stripes_.push_back(
            {start, static_cast<std::uint32_t>(end - start), -1, static_cast<std::uint32_t>(-1)});
    }
    stripeOutputs_.clear();
    stripeOutputs_.resize(static_cast<std::size_t>(count));
}

SolidCompressor::Result StripedSolidCompressor::reportFailures() const {
    Result result = Result::kDone;
    for (std::size_t i = 0; i < stripes_.size(); ++i) {
        if (stripeOutputs_[i] == nullptr) {
            std::printf("Worker %d failed with zlib error %d\n", static_cast<int>(i),
                        static_cast<int>(stripes_[i].compressedSize) + kErrorShift);
            result = Result::kStripeFailed;
        }
    }
    return result;
}

void StripedCompressWorker::run(OUtils::SharedRunState& /*sharedState*/, OUtils::ThreadState& results,
                                int threadIndex, int /*threadCount*/) {
    SolidChunk& stripe = owner_.stripes_[static_cast<std::size_t>(threadIndex)];
    std::uint32_t size = outputCapacity(stripe.uncompressedSize);
    std::unique_ptr<unsigned char[]> output(new (std::nothrow) unsigned char[size]);
    int code = Z_MEM_ERROR;
    if (output != nullptr) {
        code = owner_.compressStripe(output.get(), size, owner_.blob() + stripe.uncompressedOffset,
                                     stripe.uncompressedSize);
    }
    if (code != 0) {
        stripe.compressedSize = static_cast<std::uint32_t>(code - kErrorShift);
        return;
    }
    owner_.stripeOutputs_[static_cast<std::size_t>(threadIndex)] = std::move(output);
    stripe.compressedSize = size;
    results.counter += stripe.uncompressedSize;
}

int ZlibSolidCompressor::compressStripe(unsigned char* destination, std::uint32_t& inOutSize,
                                        const unsigned char* source, std::uint32_t sourceSize) {
    uLongf delivered = inOutSize;
    const int code = compress2(destination, &delivered, source, sourceSize, compressionLevel());
    inOutSize = static_cast<std::uint32_t>(delivered);
    return code;
}

SolidCompressor::Result ZlibSolidCompressor::compress(std::unique_ptr<unsigned char[]>& outStream,
                                                      std::int32_t& outStreamSize,
                                                      std::int32_t& outUncompressedSize) {
    const Result result = StripedSolidCompressor::compress(outStream, outStreamSize, outUncompressedSize);
    if (result != Result::kDone) {
        return result;
    }
    const std::int64_t size = layOutStream();
    outStream.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(size)]);
    if (outStream == nullptr) {
        return Result::kOutOfMemory;
    }
    const std::vector<unsigned char> header = encodeHeader();
    std::memcpy(outStream.get(), header.data(), header.size());
    for (std::size_t i = 0; i < stripes().size(); ++i) {
        std::memcpy(outStream.get() + stripes()[i].compressedOffset, stripeOutputs()[i].get(),
                    stripes()[i].compressedSize);
        stripeOutputs()[i].reset();
    }
    outStreamSize = static_cast<std::int32_t>(size);
    outUncompressedSize = blobSize();
    return Result::kDone;
}

SolidCompressor::Result ZlibSolidCompressor::compressTo(PStream& out, std::int32_t& outStreamSize,
                                                        std::int32_t& outUncompressedSize) {
    outStreamSize = 0;
    outUncompressedSize = 0;
    const Result result = compressStripes();
    if (result != Result::kDone) {
        return result;
    }
    const std::int64_t size = layOutStream();
    const std::vector<unsigned char> header = encodeHeader();
    std::uint32_t written = 0;
    if (out.write(header.data(), static_cast<std::uint32_t>(header.size()), written) != 0) {
        return Result::kWriteFailed;
    }
    for (std::size_t i = 0; i < stripes().size(); ++i) {
        if (out.write(stripeOutputs()[i].get(), stripes()[i].compressedSize, written) != 0) {
            return Result::kWriteFailed;
        }
        stripeOutputs()[i].reset();
    }
    outStreamSize = static_cast<std::int32_t>(size);
    outUncompressedSize = blobSize();
    return Result::kDone;
}

// Places each stripe after the one before. Returns the size of the whole stream, which is below 2 GiB because
// a blob is at most 1 GiB.
std::int64_t ZlibSolidCompressor::layOutStream() {
    auto position = static_cast<std::int64_t>(SolidFormat::totalHeaderSize(stripeCount()));
    for (SolidChunk& stripe : stripes()) {
        stripe.compressedOffset = static_cast<std::int32_t>(position);
        position += stripe.compressedSize;
    }
    return position;
}

std::vector<unsigned char> ZlibSolidCompressor::encodeHeader() const {
    std::vector<unsigned char> header(SolidFormat::totalHeaderSize(stripeCount()));
    std::memcpy(header.data(), SolidFormat::kMagic, sizeof(SolidFormat::kMagic));
    LittleEndian::writeUnsigned(header.data() + SolidFormat::kFormatIdOffset, SolidFormat::kFormatId);
    LittleEndian::writeUnsigned(header.data() + SolidFormat::kVersionOffset, SolidFormat::kVersion);
    LittleEndian::writeSigned(header.data() + SolidFormat::kChunkCountOffset, stripeCount());
    unsigned char* record = header.data() + SolidFormat::kHeaderSize;
    for (const SolidChunk& stripe : stripes()) {
        stripe.encode(record);
        record += SolidFormat::kChunkSize;
    }
    return header;
}
