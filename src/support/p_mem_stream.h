#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "support/p_stream.h"

// A stream over memory of its own: a chain of blocks that grows on writing. Usable without opening it.
class PMemStream : public PStream {
public:
    PMemStream() = default;
    // Starts with a copy of `size` bytes, the position at the start.
    PMemStream(const void* data, std::int64_t size);
    explicit PMemStream(std::string_view content)
        : PMemStream(content.data(), static_cast<std::int64_t>(content.size())) {}

    int open() override;
    int close() override;
    int flush() override { return 0; }
    // Writes all or throws std::bad_alloc.
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) override;
    int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) override;
    // -1 for a position above the size or below 0; the position stays then.
    int seek(std::int64_t position) override;
    int seekRelative(std::int64_t distance) override;
    int seekFromEnd(std::int64_t distance) override;  // distance 0 is after the last byte
    std::int64_t getSize() override { return size_; }
    int setEndOfStream() override;
    std::int64_t getPosition() override { return position_; }

private:
    std::vector<std::unique_ptr<unsigned char[]>> blocks_;
    std::int64_t size_ = 0;
    std::int64_t position_ = 0;
};
