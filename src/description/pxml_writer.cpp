#include "description/pxml_writer.h"

#include "description/pxml_entities.h"
#include "support/p_file_stream.h"
#include "support/text_mode.h"

namespace {

// Pieces are collected up to this many bytes.
constexpr std::size_t kPieceSize = 64 * 1024;

}  // namespace

int PXML::saveFile(std::string_view fileName, platform::FileSystem& files) const {
    PFileStream stream(files);
    if (stream.openFile(fileName, PFileStream::kReadWrite, PFileStream::kShareRead,
                        PFileStream::kCreateAlways) != 0) {
        return -1;
    }
    return saveStream(stream, OUtils::textLineEnd());
}

int PXML::saveStream(PStream& stream, std::string_view lineEnd) const {
    if (stream.getOpenCount() == 0 && stream.open() != 0) {
        return 1;
    }
    const int result = PXMLWriter(*this, stream, lineEnd).run();
    const int closed = stream.close();
    return result == 0 && closed != 0 ? 1 : result;
}

int PXMLWriter::run() {
    std::vector<std::int32_t> tops;
    document_.listChildren(-1, tops);
    for (const std::int32_t top : tops) {
        if (writeTree(top) != 0) {
            return 1;
        }
    }
    return flushAbove(0);
}

int PXMLWriter::writeTree(std::int32_t top) {
    std::int32_t node = top;
    std::int32_t depth = 0;
    for (;;) {
        if (flushAbove(kPieceSize) != 0) {
            return 1;
        }
        openElement(node, depth);
        const std::int32_t child = document_.links_[static_cast<std::size_t>(node + 1)].firstChild;
        if (child >= 0) {
            pending_.append(lineEnd_);
            node = child;
            ++depth;
            continue;
        }
        closeElement(node);
        while (node != top && document_.links_[static_cast<std::size_t>(node + 1)].nextSibling < 0) {
            node = document_.nodes_[static_cast<std::size_t>(node)].parent;
            --depth;
            pending_.append(static_cast<std::size_t>(depth), ' ');
            closeElement(node);
            if (flushAbove(kPieceSize) != 0) {
                return 1;
            }
        }
        if (node == top) {
            return 0;
        }
        node = document_.links_[static_cast<std::size_t>(node + 1)].nextSibling;
    }
}

void PXMLWriter::openElement(std::int32_t node, std::int32_t depth) {
    const PXMLNode& record = document_.nodes_[static_cast<std::size_t>(node)];
    pending_.append(static_cast<std::size_t>(depth), ' ').append("<").append(record.name);
    for (const PXMLAttribute& attribute : record.attributes) {
        pending_.append(" ").append(attribute.name).append("=\"");
        PXMLEntities::appendEscaped(pending_, attribute.value.value_or(""));
        pending_.append("\"");
    }
    pending_.append(">");
    const bool hasChildren = document_.links_[static_cast<std::size_t>(node + 1)].firstChild >= 0;
    if (!hasChildren && record.text) {
        PXMLEntities::appendEscaped(pending_, *record.text);
    }
}

void PXMLWriter::closeElement(std::int32_t node) {
    const PXMLNode& record = document_.nodes_[static_cast<std::size_t>(node)];
    pending_.append("</").append(record.name).append(">").append(lineEnd_);
}

int PXMLWriter::flushAbove(std::size_t limit) {
    std::size_t done = 0;
    while (pending_.size() > limit && done < pending_.size()) {
        const std::size_t rest = pending_.size() - done;
        const auto size = static_cast<std::uint32_t>(rest < (1U << 30) ? rest : (1U << 30));
        std::uint32_t written = 0;
        if (stream_.write(pending_.data() + done, size, written) != 0 || written != size) {
            return 1;
        }
        done += size;
    }
    if (done > 0) {
        pending_.clear();
    }
    return 0;
}
