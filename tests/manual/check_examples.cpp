#include "manual/check_examples.h"

#include <sstream>
#include <utility>

#include "manual/manual_reader.h"

namespace {

constexpr std::string_view kMarker = "\xC2\xBB";
constexpr std::string_view kZero = "\xE2\x90\x80";

// The words after a fence, those with `=` as name and value.
std::map<std::string, std::string> wordsOf(const std::string& info) {
    std::map<std::string, std::string> words;
    std::istringstream stream(info);
    for (std::string word; stream >> word;) {
        const std::size_t equals = word.find('=');
        words[word.substr(0, equals)] = equals == std::string::npos ? "" : word.substr(equals + 1);
    }
    return words;
}

std::string withoutZeroSigns(std::string text) {
    for (std::size_t at = text.find(kZero); at != std::string::npos; at = text.find(kZero, at)) {
        text.replace(at, kZero.size(), 1, '\0');
    }
    return text;
}

// The elements at the beginnings of lines, each to the next one.
std::vector<std::string> sectionsOf(const std::string& block) {
    std::vector<std::string> sections;
    std::istringstream lines(block);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t start = line.starts_with(kMarker) ? kMarker.size() : 0;
        const std::string_view tag = std::string_view(line).substr(start);
        if (sections.empty() || (tag.starts_with('<') && !tag.starts_with("</"))) {
            sections.emplace_back();
        }
        sections.back() += line + "\n";
    }
    return sections;
}

std::string nameOf(const std::string& section) {
    const std::size_t start = section.find('<') + 1;
    return section.substr(start, section.find_first_of(" />\n", start) - start);
}

void addSection(const std::string& section, bool replaces, std::string& description) {
    const std::string name = nameOf(section);
    const std::string opening = "\n  <" + name + ">\n";
    const std::string closing = "\n  </" + name + ">\n";
    const std::size_t begin = description.find(opening);
    if (begin == std::string::npos) {
        description.insert(description.rfind("</"), section);
        return;
    }
    const std::size_t end = description.find(closing);
    if (replaces) {
        description.replace(begin + 1, end + closing.size() - begin - 1, section);
        return;
    }
    const std::size_t first = section.find('\n') + 1;
    const std::string content = section.substr(first, section.rfind("</") - first);
    const bool hasPages = name.ends_with("Dialogs");
    description.insert(hasPages ? begin + opening.size() : end + 1, content);
}

std::string compose(const std::string& base, const std::string& block,
                    const std::map<std::string, std::string>& words) {
    if (words.contains("whole")) {
        return block;
    }
    if (words.contains("before")) {
        return block + base;
    }
    std::string description = base;
    if (words.contains("behind")) {
        return description + block;
    }
    for (const std::string& section : sectionsOf(block)) {
        const auto replaced = words.find("replace");
        addSection(section, replaced != words.end() && replaced->second == nameOf(section), description);
    }
    return description;
}

}  // namespace

std::vector<CheckExample> checkExamples(std::string_view page) {
    std::vector<CheckExample> examples;
    std::map<std::string, std::string> files;
    std::string base;
    for (const ManualReader::FencedBlock& block : ManualReader::fencedBlocks(page)) {
        std::map<std::string, std::string> words = wordsOf(block.info);
        if (words.contains("file")) {
            files[words["file"]] = withoutZeroSigns(block.text);
        }
        if (!words.contains("xml")) {
            continue;
        }
        CheckExample example;
        example.code = words["finding"];
        example.line = block.line;
        example.description = words.contains("base") ? block.text : compose(base, block.text, words);
        const std::size_t marker = example.description.find(kMarker);
        if (marker != std::string::npos) {
            example.place = SourceLines(example.description).placeOf(marker);
            example.description.erase(marker, kMarker.size());
        }
        example.description = withoutZeroSigns(example.description);
        if (words.contains("base")) {
            base = example.description;
        }
        if (words.contains("also")) {
            example.also.insert(words["also"]);
        }
        example.hasRoot = words.contains("root");
        example.files = std::exchange(files, {});
        examples.push_back(std::move(example));
    }
    return examples;
}
