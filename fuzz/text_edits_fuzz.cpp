// Edits files with anything as their content and as what is asked for. The input's first byte chooses: an
// INI file (section, key, value, key to go in front of, content) or a text file (description, content);
// each but the last ends with a zero byte.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/file_edit.h"
#include "engine/changes/ini_change.h"
#include "engine/changes/text_file.h"
#include "engine/report.h"
#include "fuzz_target.h"
#include "platform/memory/memory_file_system.h"

namespace {

constexpr char kFile[] = "/d/file";

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

bool editIni(std::string_view input) {
    const std::string section = takeText(input);
    const std::string key = takeText(input);
    const std::string value = takeText(input);
    const std::string beforeKey = takeText(input);
    const std::string content(input);
    MemoryFileSystem files;
    files.addFile(kFile, content);
    Report report(nullptr, nullptr);
    const RecordedResult added =
        IniChange::add(files, report, {kFile, section, key, value, false, beforeKey});
    if (!added.done) {
        require(files.content(kFile) == content);
        return false;
    }
    require(IniChange::remove(files, report, added.undo));
    std::vector<std::string> left = othersIn(files.content(kFile), key);
    const std::vector<std::string> before = othersIn(content, key);
    require(left.size() <= before.size() + 1);
    // All that a change leaves is the header of a section that it had to add.
    if (left.size() > before.size()) {
        require(left.back() == '[' + section + ']');
        left.pop_back();
    }
    // A mark at the front hides the first line from this comparison only when the key is in it.
    require(left == before || content.starts_with("\xef\xbb\xbf"));
    return true;
}

bool editText(std::string_view input) {
    const std::string description = takeText(input);
    const auto script = EditScript::parse(splitTextLines(description));
    if (!script) {
        return false;
    }
    const TextLines lines = splitTextLines(input);
    TextLines changed;
    const bool hasChanged = script->apply(lines, changed);
    require(hasChanged == (changed.size() > lines.size()));
    TextLines reverted;
    script->revert(changed, reverted);
    require(!hasChanged || reverted.size() < changed.size());
    std::size_t added = 0;
    for (const EditScript::Pair& pair : script->pairs()) {
        added += pair.addition.size();
    }
    require(changed.size() <= lines.size() + added);
    require(changed.size() < lines.size() + added || reverted == lines);
    return hasChanged;
}

}  // namespace

bool accepts(std::string_view input) {
    if (input.empty()) {
        return false;
    }
    const bool isIni = input.front() == 'i';
    input.remove_prefix(1);
    return isIni ? editIni(input) : editText(input);
}
