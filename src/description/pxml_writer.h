#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "description/pxml.h"

// Writes a document to an open stream. Made for one run.
class PXMLWriter {
public:
    // All must outlive the writer.
    PXMLWriter(const PXML& document, PStream& stream, std::string_view lineEnd)
        : document_(document), stream_(stream), lineEnd_(lineEnd) {}

    // 0, or 1 as soon as something can't be written.
    int run();

private:
    int writeTree(std::int32_t top);
    void openElement(std::int32_t node, std::int32_t depth);
    void closeElement(std::int32_t node);
    int flushAbove(std::size_t limit);

    const PXML& document_;
    PStream& stream_;
    std::string_view lineEnd_;
    std::string pending_;
};
