#include "previewer/walk_record.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/text_functions.h"

namespace {

constexpr LayoutFault::Kind kKinds[] = {LayoutFault::Kind::kCut, LayoutFault::Kind::kOutside,
                                        LayoutFault::Kind::kOverlap};

std::string inOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return text;
}

std::string numbers(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += '\t' + std::to_string(value);
    }
    return text;
}

int numberAt(const std::vector<std::string>& words, std::size_t index) {
    int number = 0;
    if (index < words.size()) {
        std::from_chars(words[index].data(), words[index].data() + words[index].size(), number);
    }
    return number;
}

void readPageLine(const std::vector<std::string>& words, PageRecord& page) {
    if (words[0] == "note" && words.size() > 1) {
        page.notes.push_back(words[1]);
        return;
    }
    const auto* const kind = std::ranges::find(kKinds, words[0], nameOf);
    if (kind != std::end(kKinds)) {
        page.faults.push_back(
            {*kind,
             {numberAt(words, 1), numberAt(words, 2), numberAt(words, 3), numberAt(words, 4)},
             words.size() > 5 ? words[5] : std::string()});
    }
}

}  // namespace

std::string textOf(const WalkRecord& record) {
    std::string text;
    for (const PageRecord& page : record.pages) {
        text += "page\t" + page.file + numbers({page.size.width, page.size.height}) + '\n';
        for (const LayoutFault& fault : page.faults) {
            const Place& place = fault.place;
            text += nameOf(fault.kind) + numbers({place.x, place.y, place.width, place.height}) + '\t' +
                    inOneLine(fault.text) + '\n';
        }
        for (const std::string& note : page.notes) {
            text += "note\t" + inOneLine(note) + '\n';
        }
    }
    for (const std::string& end : record.ends) {
        text += "end\t" + inOneLine(end) + '\n';
    }
    return text;
}

WalkRecord readWalkRecord(std::string_view text) {
    WalkRecord record;
    for (const std::string& line : OUtils::splitText(text, '\n')) {
        const std::vector<std::string> words = OUtils::splitText(line, '\t');
        if (words.size() < 2) {
            continue;
        }
        if (words[0] == "page") {
            record.pages.push_back({words[1], {numberAt(words, 2), numberAt(words, 3)}, {}, {}});
        } else if (words[0] == "end") {
            record.ends.push_back(words[1]);
        } else if (!record.pages.empty()) {
            readPageLine(words, record.pages.back());
        }
    }
    return record;
}
