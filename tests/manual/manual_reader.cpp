#include "manual/manual_reader.h"

#include <algorithm>
#include <cctype>

namespace ManualReader {

namespace {

constexpr std::string_view kFence = "```";

bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// Calls `take(line, isFenced, isFence)` for each line, which holds no line feed.
template <typename Take>
void forEachLine(std::string_view page, Take&& take) {
    bool isFenced = false;
    while (!page.empty()) {
        const std::size_t end = std::min(page.find('\n'), page.size());
        const std::string_view line = page.substr(0, end);
        const bool isFence = line.starts_with(kFence);
        take(line, isFenced, isFence);
        isFenced = isFence ? !isFenced : isFenced;
        page.remove_prefix(std::min(end + 1, page.size()));
    }
}

void appendSpans(std::string_view line, std::string& out) {
    for (std::size_t start = line.find('`'); start != std::string_view::npos;) {
        const std::size_t end = line.find('`', start + 1);
        if (end == std::string_view::npos) {
            return;
        }
        out.append(line.substr(start + 1, end - start - 1)).append("\n");
        start = line.find('`', end + 1);
    }
}

}  // namespace

std::vector<FencedBlock> fencedBlocks(std::string_view page) {
    std::vector<FencedBlock> blocks;
    int number = 0;
    forEachLine(page, [&](std::string_view line, bool isFenced, bool isFence) {
        ++number;
        if (isFence && !isFenced) {
            blocks.push_back({std::string(line.substr(kFence.size())), "", number});
        } else if (isFenced && !isFence) {
            blocks.back().text.append(line).append("\n");
        }
    });
    return blocks;
}

std::string codeOf(std::string_view page) {
    std::string code;
    forEachLine(page, [&](std::string_view line, bool isFenced, bool isFence) {
        if (isFenced && !isFence) {
            code.append(line).append("\n");
        } else if (!isFence) {
            appendSpans(line, code);
        }
    });
    return code;
}

bool holdsWord(std::string_view code, std::string_view word) {
    for (std::size_t at = code.find(word); at != std::string_view::npos; at = code.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        const bool startsHere = at == 0 || !isWordCharacter(code[at - 1]) || !isWordCharacter(word.front());
        const bool endsHere =
            end == code.size() || !isWordCharacter(code[end]) || !isWordCharacter(word.back());
        if (startsHere && endsHere) {
            return true;
        }
    }
    return false;
}

}  // namespace ManualReader
