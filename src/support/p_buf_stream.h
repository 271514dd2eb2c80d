#pragma once

#include "support/p_stream.h"

// A stream over one block of memory, which doesn't grow. open, close and flush always succeed; a stream over
// a block can be used without opening it.
class PBufStream : public PStream {
public:
    PBufStream() = default;
    // As attach.
    PBufStream(void* data, std::int64_t size);
    ~PBufStream() override;

    // Frees an owned earlier block and takes `data` without ownership; it must outlive its use here. The
    // position is 0 afterwards.
    void attach(void* data, std::int64_t size);
    // The same for a block from std::malloc, which this object frees. In both a negative size counts as 0.
    void adopt(void* data, std::int64_t size);

    int open() override;
    int close() override;
    int flush() override { return 0; }
    // Copies at most what fits up to the size. A full block is not a failure: 0 bytes, status 0.
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) override;
    // Copies what is left up to `size`; 0 bytes and status 0 at the end. -1 when prepareRead refuses.
    int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) override;
    // -1 for a position above the size or below 0; the position stays then.
    int seek(std::int64_t position) override;
    int seekRelative(std::int64_t distance) override;
    // The distance counts back from the last byte: 0 is on it and not after it, unlike files. -1 outside
    // the block; the position stays then.
    int seekFromEnd(std::int64_t distance) override;
    std::int64_t getSize() override { return data_ == nullptr ? -1 : size_; }
    // The block is used up to the position only; its memory stays.
    int setEndOfStream() override;
    std::int64_t getPosition() override { return position_; }

protected:
    // Called before each read: true when there is something to read from.
    virtual bool prepareRead() { return data_ != nullptr; }

private:
    void freeOwned();

    std::int64_t position_ = 0;
    unsigned char* data_ = nullptr;
    std::int64_t size_ = 0;
    bool ownsData_ = true;
};
