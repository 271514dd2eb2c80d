#pragma once

#include <vector>

#include "support/p_file_stream.h"

// A file stream that works on a view of the whole file, as it was when it was opened; the file can't grow.
// Changes reach the file at flush and close. The view is held in memory: files above 2,147,483,647 bytes
// have none, and neither have empty ones.
class PMMFileStream : public PFileStream {
public:
    using PFileStream::PFileStream;
    ~PMMFileStream() override;  // closes

    // -1 when the file is open but can't be viewed; it is closed then.
    int open() override;
    int close() override;
    int flush() override;
    // -1, moving nothing, when the range passes the end of the file.
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) override;
    int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) override;
    // -1 for a position below 0 or not below the size; the position stays then.
    int seek(std::int64_t position) override;
    int seekRelative(std::int64_t distance) override;
    int seekFromEnd(std::int64_t distance) override;
    std::int64_t getSize() override;  // -1 when no view is open
    int setEndOfStream() override;    // always -1: a viewed file can't be cut
    std::int64_t getPosition() override;

private:
    int readView();

    std::vector<unsigned char> view_;
    std::int64_t position_ = 0;
    std::int64_t changedFrom_ = 0;  // the bytes [changedFrom_, changedTo_) aren't in the file yet
    std::int64_t changedTo_ = 0;
};
