#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "description/pxml.h"
#include "fuzz_target.h"
#include "support/p_mem_stream.h"

// What is read is written and read again: both documents must be the same in what writing keeps.
namespace {

// Deeper documents are legal but blow up in writing, since each level indents by one more blank.
constexpr std::int32_t kWrittenNodes = 400;

void checkTable(const PXML& document) {
    for (std::int32_t node = 0; node < document.getNodeCount(); ++node) {
        const PXMLNode& record = *document.getNode(node);
        require(record.index == node && record.parent < node);
        require(document.findByName(record.name, node - 1) == node);
        require(document.findChild(record.parent, record.name, node - 1) == node);
        for (const PXMLAttribute& attribute : record.attributes) {
            require(document.getAttribute(node, attribute.name).has_value());
        }
    }
}

std::string written(const PXML& document) {
    PMemStream stream;
    require(document.saveStream(stream) == 0);
    std::string text(static_cast<std::size_t>(stream.getSize()), '\0');
    std::uint32_t done = 0;
    stream.seek(0);
    stream.read(text.data(), static_cast<std::uint32_t>(text.size()), done);
    return text;
}

bool isSameTable(const PXML& document, const PXML& other) {
    bool same = document.getNodeCount() == other.getNodeCount();
    for (std::int32_t node = 0; same && node < document.getNodeCount(); ++node) {
        const PXMLNode& record = *document.getNode(node);
        const PXMLNode& counterpart = *other.getNode(node);
        same = record.name == counterpart.name && record.parent == counterpart.parent &&
               record.attributes.size() == counterpart.attributes.size();
    }
    return same;
}

}  // namespace

bool accepts(std::string_view input) {
    const std::string text(input);
    PXML document;
    document.parseText(text);
    checkTable(document);
    document.findPath(text);
    document.findRelative(-1, text);
    std::vector<std::int32_t> visited;
    document.walkFrom(0, visited);
    require(visited.size() == static_cast<std::size_t>(document.getNodeCount()));
    if (document.getNodeCount() <= kWrittenNodes) {
        PXML again;
        again.parseText(written(document));
        checkTable(again);
        return document.getNodeCount() > 0 && isSameTable(document, again);
    }
    return false;
}
