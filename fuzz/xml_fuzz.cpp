#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "description/pxml.h"
#include "support/p_mem_stream.h"

// What is read is written and read again: both documents must be the same in what writing keeps.
namespace {

// Deeper documents are legal but blow up in writing, since each level indents by one more blank.
constexpr std::int32_t kWrittenNodes = 400;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
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
    }
    return 0;
}
