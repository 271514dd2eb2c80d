#include "text/word_wrap.h"

#include <algorithm>

namespace {

// Whether there are two adjacent blanks in the bytes from `begin` to `begin` + `count`, both inclusive.
// Without branches, so that compilers can look at many bytes at once: most texts have no such blanks.
bool hasDoubleBlank(const char* begin, std::size_t count) {
    unsigned char found = 0;
    for (std::size_t i = 0; i < count; ++i) {
        found |= static_cast<unsigned char>((begin[i] == ' ') & (begin[i + 1] == ' '));
    }
    return found != 0;
}

// Whether there is a blank at either end or next to another.
bool hasNeedlessBlanks(std::string_view text) {
    constexpr std::size_t kBlock = 64;
    if (text.empty() || text.front() == ' ' || text.back() == ' ') {
        return !text.empty();
    }
    const char* at = text.data();
    const char* const last = at + text.size() - 1;
    for (; static_cast<std::size_t>(last - at) >= kBlock; at += kBlock) {
        if (hasDoubleBlank(at, kBlock)) {
            return true;
        }
    }
    return hasDoubleBlank(at, static_cast<std::size_t>(last - at));
}

// The words with one blank between them: the text itself if it is like that, otherwise `copy`.
std::string_view withSingleBlanks(std::string_view text, std::string& copy) {
    if (!hasNeedlessBlanks(text)) {
        return text;
    }
    copy.reserve(text.size());
    for (std::size_t begin = text.find_first_not_of(' '); begin != std::string_view::npos;) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        copy += copy.empty() ? "" : " ";
        copy += text.substr(begin, end - begin);
        begin = text.find_first_not_of(' ', end);
    }
    return copy;
}

class LineWriter {
public:
    LineWriter(std::string& out, const WrapLayout& layout)
        : out_(out), layout_(layout), indentNext_(layout.indentFirstLine) {}

    // Distributes `extra` blanks among the words of the line.
    void write(std::string_view line, std::size_t extra) {
        if (indentNext_) {
            out_.append(layout_.indent, layout_.fillChar);
        }
        indentNext_ = true;
        if (extra > 0) {
            line = writePadded(line, extra);
        }
        out_ += line;
        out_ += '\n';
    }

private:
    // Returns the last word, which has no gap after it.
    std::string_view writePadded(std::string_view line, std::size_t extra) {
        const auto gaps = static_cast<std::size_t>(std::count(line.begin(), line.end(), ' '));
        const std::size_t words = gaps + 1;
        for (std::size_t i = 0; i < gaps; ++i) {
            const std::size_t end = line.find(' ');
            out_ += line.substr(0, end);
            out_.append(extra / words + (i < extra % words ? 2 : 1), ' ');
            line.remove_prefix(end + 1);
        }
        return line;
    }

    std::string& out_;
    const WrapLayout& layout_;
    bool indentNext_;
};

}  // namespace

void appendWrapped(std::string& out, std::string_view text, const WrapLayout& layout) {
    std::string copy;
    std::string_view rest = withSingleBlanks(text, copy);
    // Counts the blank after the last word of a line, although it isn't written.
    const std::size_t avail = layout.width - std::min(layout.width, layout.indent);
    LineWriter line(out, layout);
    while (rest.size() + 1 > avail) {
        std::size_t end = avail > 0 ? rest.rfind(' ', avail - 1) : std::string_view::npos;
        if (end == std::string_view::npos) {
            end = rest.find(' ', avail);  // a word that is too long
        }
        if (end == std::string_view::npos) {
            break;
        }
        const std::size_t used = end + 1;
        line.write(rest.substr(0, end), layout.justify && used < avail ? avail - used : 0);
        rest.remove_prefix(used);
    }
    line.write(rest, 0);
}
