#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class RichTextCallback;

enum class RtfMode : std::uint8_t {
    kTerminal = 0,  // the attributes of terminals are written into the text
    kControl = 1,   // none
    kPlain = 2,     // none
};

// Where a document is broken.
struct RtfFault {
    // In bytes: of the brace that closes nothing, or the length of a document that ends with open groups.
    std::size_t offset = 0;
    // 0 for a brace that closes nothing.
    std::size_t openGroups = 0;
};

// What the rules of the subset leave out of a document.
enum class RtfLossKind : std::uint8_t {
    kByte,        // a byte in hexadecimal
    kCharacter,   // a control word that means a character or a new line
    kSoftHyphen,  // a soft hyphen, which takes the text up to the next space along
    kTab,         // a tab character
    kControl,     // another control character, which stays in the text
    kGroup,       // a group with text that isn't one of the tables which every document has
};

struct RtfLoss {
    RtfLossKind kind;
    std::size_t offset;       // of its first byte in the document
    std::string_view source;  // what the document has there; a view into it
};

// Reads a small subset of the Rich Text Format in one pass: it returns the plain text of a document and calls
// a callback that shows it with its styles. One reader serves one text.
class RtfReader {
public:
    // Borrowed; null removes it. To be set before read.
    void setCallback(RichTextCallback* callback) { callback_ = callback; }

    // Receives the losses of the next reads, in the order of the document. Borrowed; null for none.
    void setLosses(std::vector<RtfLoss>* losses) { losses_ = losses; }

    // Returns the text of the document, which ends at its first zero byte; wrapped to `width` bytes when
    // `width` is above 0. Nothing when the groups of the document aren't balanced; by then the callback has
    // received everything before the fault. The time is linear in the length of the document.
    std::optional<std::string> read(std::string_view document, RtfMode mode, int width);

    // Where the document is broken; set by a read that returned nothing.
    const RtfFault& getFault() const { return fault_; }

private:
    RichTextCallback* callback_ = nullptr;
    std::vector<RtfLoss>* losses_ = nullptr;
    RtfFault fault_;
};
