#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "checking/finding.h"

// An element as XML 1.0 defines it.
struct StrictElement {
    struct Attribute {
        std::string name;
        std::string value;
        std::size_t valueAt = 0;  // of the character after the opening quote
    };

    std::string name;
    std::int32_t parent = -1;
    std::size_t at = 0;  // of its `<`
    std::vector<Attribute> attributes;
    std::string text;        // all that stands directly in it, with LF for each line end
    std::size_t textAt = 0;  // of the first character of it that isn't blank; 0 without one
};

// Reads a whole text strictly. Entities cannot be declared, so the memory is bounded by the text. Offsets are
// those of bytes.
class StrictReader {
public:
    StrictReader(std::string_view text, Findings& findings) : text_(text), findings_(findings) {}

    // False when the text isn't well-formed: there is a finding, and elements() has what was read before it.
    bool read();

    // In the order of their opening tags.
    const std::vector<StrictElement>& elements() const { return elements_; }

private:
    struct Handlers;

    bool isFitForReading();
    void open(const char* name, const char** attributes, std::size_t at);
    void addText(std::string_view text, std::size_t at);
    void reportError(int error, std::size_t at);
    void reportUnclosed();
    void reportMismatch(std::size_t at);
    void reportInvalidToken(std::size_t at);
    void reportReferences();
    bool isInsideSkipped(std::size_t offset) const;

    std::string_view text_;
    Findings& findings_;
    std::vector<StrictElement> elements_;
    std::vector<std::int32_t> open_;
    // Comments and the like, in which nothing is looked for: begin and end.
    std::vector<std::pair<std::size_t, std::size_t>> skipped_;
    bool isRefused_ = false;  // a finding says already why the reading stopped
};
