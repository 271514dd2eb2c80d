// Edits files with anything as their content and as what is asked for. The input's first byte chooses: an
// INI file (section, key, value, key to stand in front of, content) or a text file (description, content);
// each but the last ends with a zero byte.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/memory_file_system.h"
#include "wini/change_description.h"
#include "wini/ini_files.h"
#include "wini/text_file.h"

namespace {

constexpr char kFile[] = "/d/file";

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string takeText(std::string_view& input) {
    const std::size_t end = std::min(input.find('\0'), input.size());
    const std::string text(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    return text;
}

// The lines that are none of the key, in any section.
std::vector<std::string> othersIn(const std::string& content, const std::string& key) {
    std::vector<std::string> others;
    for (const std::string_view line : splitTextLines(content)) {
        if (!line.starts_with(key + '=')) {
            others.emplace_back(line);
        }
    }
    return others;
}

void editIni(std::string_view input) {
    const std::string section = takeText(input);
    const std::string key = takeText(input);
    const std::string value = takeText(input);
    const std::string beforeKey = takeText(input);
    const std::string content(input);
    MemoryFileSystem files;
    files.addFile(kFile, content);
    std::vector<std::string> errors;
    IniFiles ini(files, errors);
    std::string undo;
    if (!ini.addIniEntry(kFile, section.c_str(), key.c_str(), value.c_str(), undo, nullptr, false,
                         beforeKey.c_str())) {
        require(files.content(kFile) == content);
        return;
    }
    require(ini.removeIniEntry(undo.c_str(), nullptr));
    std::vector<std::string> left = othersIn(files.content(kFile), key);
    const std::vector<std::string> before = othersIn(content, key);
    require(left.size() <= before.size() + 1);
    // All that a change leaves behind is the header of a section that it had to add.
    if (left.size() > before.size()) {
        require(left.back() == '[' + section + ']');
        left.pop_back();
    }
    // A mark at the front hides the first line from this comparison only when the key is in it.
    require(left == before || content.starts_with("\xef\xbb\xbf"));
}

void editText(std::string_view input) {
    const std::string description = takeText(input);
    const auto pairs = ChangeDescription::parse(splitTextLines(description));
    if (!pairs.has_value()) {
        return;
    }
    const TextLines lines = splitTextLines(input);
    TextLines changed;
    const bool hasChanged = ChangeDescription::apply(*pairs, lines, changed);
    require(hasChanged == (changed.size() > lines.size()));
    TextLines reverted;
    ChangeDescription::revert(*pairs, changed, reverted);
    require(!hasChanged || reverted.size() < changed.size());
    std::size_t added = 0;
    for (const ChangePair& pair : *pairs) {
        added += pair.addition.size();
    }
    require(changed.size() <= lines.size() + added);
    require(changed.size() < lines.size() + added || reverted == lines);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    if (input.empty()) {
        return 0;
    }
    const bool isIni = input.front() == 'i';
    input.remove_prefix(1);
    if (isIni) {
        editIni(input);
    } else {
        editText(input);
    }
    return 0;
}
