#include "text/verbatim_text.h"

#include <algorithm>
#include <cstddef>

#include "base/text_columns.h"
#include "base/utf8_character.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::size_t kTabColumns = 8;
// The last cells of a line stay free, so that no terminal wraps it by itself.
constexpr int kFreeColumns = 2;

std::string_view contentOf(std::string_view document) {
    document = document.substr(0, document.find('\0'));
    if (document.starts_with(kByteOrderMark)) {
        document.remove_prefix(kByteOrderMark.size());
    }
    return document;
}

std::string readLine(std::string_view source) {
    std::string line;
    line.reserve(source.size());
    std::size_t columns = 0;
    while (!source.empty()) {
        const std::size_t length = OUtils::utf8CharacterLength(source);
        if (source.front() == '\t') {
            const std::size_t blanks = kTabColumns - columns % kTabColumns;
            line.append(blanks, ' ');
            columns += blanks;
        } else {
            const std::string_view character = length == 0 ? kReplacement : source.substr(0, length);
            line += character;
            columns += OUtils::columnsOf(character);
        }
        source.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return line;
}

// The part of a text that fits into some cells, at least one character.
std::size_t bytesThatFit(std::string_view text, std::size_t columns) {
    std::size_t bytes = 0;
    for (std::size_t used = 0; bytes < text.size();) {
        const std::size_t length = std::max<std::size_t>(OUtils::utf8CharacterLength(text.substr(bytes)), 1);
        used += OUtils::columnsOf(text.substr(bytes, length));
        if (used > columns && bytes > 0) {
            break;
        }
        bytes += length;
    }
    return bytes;
}

class LineBreaker {
public:
    LineBreaker(std::string& out, std::size_t width) : out_(out), width_(width) {}

    void write(std::string_view line) {
        if (OUtils::columnsOf(line) <= width_) {
            out_ += line;
            out_ += '\n';
            return;
        }
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        const std::size_t setIn = indent <= width_ / 2 ? indent : 0;
        std::string_view rest = line.substr(indent);
        do {
            rest = writePart(rest, setIn);
        } while (!rest.empty());
    }

private:
    // Returns what is left for further lines.
    std::string_view writePart(std::string_view rest, std::size_t setIn) {
        std::size_t end = bytesThatFit(rest, width_ - setIn);
        if (end < rest.size()) {
            const std::size_t blank = rest.rfind(' ', end);
            end = blank == std::string_view::npos ? end : blank;
        }
        const std::size_t next = std::min(rest.find_first_not_of(' ', end), rest.size());
        const std::string_view part = rest.substr(0, end);
        out_.append(setIn, ' ');
        out_ += next > end ? part.substr(0, part.find_last_not_of(' ') + 1) : part;
        out_ += '\n';
        return rest.substr(next);
    }

    std::string& out_;
    const std::size_t width_;
};

}  // namespace

std::vector<std::string> verbatimLines(std::string_view document) {
    std::vector<std::string> lines;
    std::string_view rest = contentOf(document);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of("\n\r\f"), rest.size());
        lines.push_back(readLine(rest.substr(0, end)));
        rest.remove_prefix(end);
        rest.remove_prefix(rest.empty() ? 0 : rest.starts_with("\r\n") ? 2 : 1);
    }
    return lines;
}

std::string verbatimAsText(std::string_view document, int columns) {
    const int width = std::max(std::max(columns, 0) - kFreeColumns, 1);
    std::string text;
    LineBreaker breaker(text, static_cast<std::size_t>(width));
    for (const std::string& line : verbatimLines(document)) {
        breaker.write(line);
    }
    return text;
}
