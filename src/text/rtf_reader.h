#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class RichTextCallback;

enum class RtfMode : std::uint8_t {
    kTerminal = 0,  // attributes of terminals are written into the text
    kControl = 1,   // none
    kPlain = 2,     // none
};

// Where a document is broken.
struct RtfFault {
    // Of a brace that closes nothing, or of the end of a document with open groups, in bytes.
    std::size_t offset = 0;
    // 0 for a brace that closes nothing.
    std::size_t openGroups = 0;
};

// Reads a small subset of the Rich Text Format, in one pass: the plain text of a document, and calls for
// whoever shows it with its styles. One reader serves one text.
class RtfReader {
public:
    // Borrowed; null takes it away. Set ahead of read.
    void setCallback(RichTextCallback* callback) { callback_ = callback; }

    // The text of the document, which ends at its first zero byte, wrapped to `width` characters of one byte
    // when `width` is above 0. Nothing when the groups of the document aren't balanced; nothing is shown or
    // raised then, and the callback was told what stands ahead of the fault. The time is linear in the length
    // of the document.
    std::optional<std::string> read(std::string_view document, RtfMode mode, int width);

    // For whoever wants to tell the author; set by a read that gave nothing.
    const RtfFault& getFault() const { return fault_; }

private:
    RichTextCallback* callback_ = nullptr;
    RtfFault fault_;
};
