#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class PStream;

// Reads a stream line by line into bounded buffers: a line that doesn't fit comes in pieces, each as if it
// were a line. Lines end with a line feed or the stream's end.
class LineReader {
public:
    // Starts at the stream's present position; the stream outlives this object and isn't used by others
    // meanwhile.
    explicit LineReader(PStream& stream);

    // Takes the next line, its line feed included, or as many bytes of it as fit `bufferSize` with a
    // terminator. False at the end of the stream or after a failed read; `outLine` is empty then.
    bool readLine(std::string& outLine, std::size_t bufferSize);
    // Goes back to the start. False when the stream refuses.
    bool rewind() { return moveTo(0); }
    // Goes to an offset of the stream. False when the stream refuses.
    bool moveTo(std::int64_t position);
    // The offset in the stream of what readLine gives next.
    std::int64_t position() const { return blockPosition_ + static_cast<std::int64_t>(next_); }
    // Whether a read failed, rather than the stream having ended.
    bool hasFailed() const { return failed_; }

private:
    bool fill();

    PStream& stream_;
    std::vector<char> block_;
    std::size_t next_ = 0;  // within the block
    std::size_t end_ = 0;
    std::int64_t blockPosition_;
    bool failed_ = false;
};

// The text without white space at its end.
std::string_view withoutTrailingSpace(std::string_view text);

// Whether a line of a log is a record with this tag.
bool isLogRecord(std::string_view line, std::string_view tag);
// What follows the next separator of a log line and the separators right after it; empty when there is
// none.
std::string_view nextLogField(std::string_view rest);
// The text up to the next separator.
std::string_view firstLogField(std::string_view rest);
