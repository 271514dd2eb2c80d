#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A stream of bytes: the interface below the cabinet loader, the description parser and the log consoles.
// Unless a comment says otherwise, operations return 0 or an error number; -1 is an error of the stream
// itself, others are the system's. Positions and distances are in bytes. One thread at a time.
class PStream {
public:
    PStream() = default;
    PStream(const PStream&) = delete;
    PStream& operator=(const PStream&) = delete;
    virtual ~PStream() = default;

    // Opens with the parameters set before and adds 1 to the open count.
    virtual int open() = 0;
    // Subtracts 1 from the open count.
    virtual int close() = 0;
    virtual int flush() = 0;

    // `outWritten` gets the bytes written, also after a failure.
    virtual int write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) = 0;
    // Writes all bytes of the text; -1 when not all of it could be written.
    virtual int writeText(std::string_view text);
    // Writes `size` as 2 bytes, little-endian, then the bytes. `outWritten` counts the 2 bytes as well. -1
    // when not all of it could be written.
    virtual int writeBlock(const void* buffer, std::uint16_t size, std::uint32_t& outWritten);

    // `outRead` gets the bytes read, also after a failure; fewer than `size` at the end of the stream.
    virtual int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) = 0;
    // Reads what writeBlock wrote into a buffer of at least 65,535 bytes. `outRead` counts the 2 length bytes
    // as well. -1 when the length or the bytes are cut off; `outSize` is 0 when the length couldn't be read.
    virtual int readBlock(void* buffer, std::uint16_t& outSize, std::uint32_t& outRead);
    // The same for a text. A length not below `capacity` gives -1 and reads nothing more. After a failure
    // `outText` holds what was read of the text.
    virtual int readBlockText(std::string& outText, std::uint16_t capacity, std::uint32_t& outRead);

    virtual int seek(std::int64_t position) = 0;  // from the start
    virtual int seekRelative(std::int64_t distance) = 0;
    virtual int seekFromEnd(std::int64_t distance) = 0;
    virtual std::int64_t getSize() = 0;  // -1 on failure
    virtual int setEndOfStream() = 0;    // truncates at the position
    virtual std::int64_t getPosition() = 0;
    virtual bool isAtEnd();  // the position isn't below the size
    virtual std::int32_t getOpenCount() { return openCount_; }

protected:
    std::int32_t openCount_ = 0;

private:
    bool readLength(std::uint16_t& outLength, std::uint32_t& outRead);
};
