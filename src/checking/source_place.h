#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// Where something stands in a text. Both are counted from 1; a column is a character, of whatever bytes, but
// for the byte order mark, which has none.
struct SourcePlace {
    std::int32_t line = 1;
    std::int32_t column = 1;

    friend bool operator==(const SourcePlace&, const SourcePlace&) = default;
    friend bool operator<(const SourcePlace& a, const SourcePlace& b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    }
    friend bool operator<=(const SourcePlace& a, const SourcePlace& b) { return !(b < a); }
    friend bool operator>=(const SourcePlace& a, const SourcePlace& b) { return !(a < b); }
};

// Finds the places of offsets in a text. Lines end with LF, CR LF or CR.
class SourceLines {
public:
    // The text is UTF-8, borrowed, and outlives this object.
    explicit SourceLines(std::string_view text);

    // Of a byte; one beyond the end counts as the end.
    SourcePlace placeOf(std::size_t offset) const;

private:
    std::string_view text_;
    std::size_t charactersBefore(std::size_t offset) const;

    std::vector<std::size_t> starts_;      // of each line
    std::vector<std::size_t> characters_;  // before each block of bytes, as one line may be the whole text
};
