#include "wini/ini_files.h"

#include <optional>
#include <string_view>
#include <vector>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "platform/file_system.h"
#include "wini/ini_editor.h"
#include "wini/ini_reader.h"
#include "wini/same_path.h"
#include "wini/text_file.h"
#include "wini/undo_text.h"

struct IniFiles::Entry {
    std::string file;
    std::string section;
    std::string key;
    std::string value;
    bool isPath = false;
    const char* beforeKey = nullptr;
};

namespace {

using Lines = std::vector<std::string_view>;
using ActionLogFormat::kCreate;
using ActionLogFormat::kNone;
using ActionLogFormat::kReplace;

constexpr std::string_view kUtf8Mark = "\xef\xbb\xbf";

// A mark at the front belongs to the file and not to its first line.
std::string_view headOf(std::string_view content) {
    return content.substr(0, content.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0);
}

// Bytes put between 16-bit characters would spoil them.
bool isWide(std::string_view content) {
    return content.starts_with("\xff\xfe") || content.starts_with("\xfe\xff");
}

Lines linesOf(const TextFile& file) {
    const std::string_view content = file.content();
    return splitTextLines(content.substr(headOf(content).size()));
}

// What the walk over the lines finds again.
bool isKey(const std::string& key) {
    return UndoText::isField(key) && key.find('=') == std::string::npos && key[0] != ';' && key[0] != '[';
}

bool isValue(const std::string& value) {
    return value.find_first_of("\r\n") == std::string::npos;
}

// The value as the profile functions give it; where that, written back, would not be the same to them, with
// the quotes that keep it.
std::string_view valueToRestore(std::string_view text) {
    const std::string_view value = iniValueOf(text);
    return iniValueOf(value) == value ? value : OUtils::trimWhiteSpace(text);
}

// The earlier value of the key: that of the line that gives way, or else of the one that a reader finds. None
// when it is missing or empty.
std::optional<std::string> earlierValue(const Lines& lines, const IniEditor& editor,
                                        const std::string& section, const std::string& key) {
    std::optional<std::string> value;
    if (!editor.lostValues().empty()) {
        value = valueToRestore(editor.lostValues().front());
    } else if (const auto found = iniValue(lines, section, key)) {
        value = *found;
    }
    return value.has_value() && !value->empty() ? value : std::nullopt;
}

// None when the section doesn't fit the buffers in which it is looked through.
std::optional<std::vector<std::string>> valuesOf(const Lines& lines, const std::string& section) {
    std::vector<std::string> values;
    std::size_t listSize = 1;
    for (const IniEntry& entry : iniEntries(lines, section)) {
        listSize += entry.key.size() + 1;
        if (listSize > IniFiles::kKeyListSize || entry.value.size() >= IniFiles::kValueSize) {
            return std::nullopt;
        }
        values.emplace_back(entry.value);
    }
    return values;
}

}  // namespace

bool IniFiles::writeIniValue(const char* file, const char* section, const char* key, const char* value,
                             IniMode mode, const char* beforeKey) {
    switch (mode) {
        case IniMode::kDeleteKey:
            return key != nullptr && writeIniLine(file, section, key, nullptr, nullptr);
        case IniMode::kWriteValue:
            return key != nullptr && value != nullptr && writeIniLine(file, section, key, value, beforeKey);
        case IniMode::kDeleteSection:
            return writeIniLine(file, section, nullptr, nullptr, nullptr);
        case IniMode::kNone:
            break;
    }
    return true;
}

bool IniFiles::writeIniLine(const char* file, const char* section, const char* key, const char* value,
                            const char* beforeKey) {
    if (file == nullptr || section == nullptr || *section == '\0') {
        return false;
    }
    TextFile text(files_, file);
    if (text.load() == TextFile::State::kUnreadable || isWide(text.content())) {
        return false;
    }
    const Lines lines = linesOf(text);
    IniEditor editor({section, key, value, beforeKey});
    editor.run(lines);
    return editor.lines() == lines || text.store(headOf(text.content()), editor.lines());
}

bool IniFiles::addIniEntry(const char* file, const char* section, const char* key, const char* value,
                           std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey) {
    const auto textOf = [](const char* text) { return std::string(text == nullptr ? "" : text); };
    const bool hasBefore = beforeKey != nullptr && *beforeKey != '\0';
    const Entry entry{textOf(file),  textOf(section), textOf(key),
                      textOf(value), isPath,          hasBefore ? beforeKey : nullptr};
    outUndo.clear();
    bool isNew = true;
    const Outcome outcome = value == nullptr ? Outcome::kFailed : change(entry, outUndo, isNew);
    if (outcome == Outcome::kPresent) {
        outUndo = kNone;
        return true;
    }
    const bool done = outcome == Outcome::kDone;
    return isNew ? tell(done, "Create ", "FAILED to create ", entry, ui)
                 : tell(done, "Replace ", "FAILED to replace ", entry, ui);
}

IniFiles::Outcome IniFiles::change(const Entry& entry, std::string& outUndo, bool& outIsNew) {
    TextFile text(files_, entry.file);
    if (!UndoText::isField(entry.file) || !UndoText::isField(entry.section) || !isKey(entry.key) ||
        !isValue(entry.value) || text.load() == TextFile::State::kUnreadable || isWide(text.content())) {
        return Outcome::kFailed;
    }
    const Lines lines = linesOf(text);
    IniEditor editor({entry.section.c_str(), entry.key.c_str(), entry.value.c_str(), entry.beforeKey});
    editor.run(lines);
    const auto earlier = earlierValue(lines, editor, entry.section, entry.key);
    outIsNew = !earlier.has_value();
    if (entry.isPath) {
        const auto values = valuesOf(lines, entry.section);
        if (!values.has_value()) {
            return Outcome::kFailed;
        }
        if (namesSameDirectory(files_, *values, entry.value)) {
            return Outcome::kPresent;
        }
    }
    // The undo of a new key doesn't need the value, which the record may cut.
    const std::string record = UndoText::of({kCreate, entry.file, entry.section, entry.key});
    const std::string undo = outIsNew
                                 ? UndoText::of({record, entry.value})
                                 : UndoText::of({kReplace, entry.file, entry.section, entry.key, *earlier});
    const bool canBeUndone =
        UndoText::fitsRecord(ActionLogFormat::kIni, outIsNew ? record : undo) &&
        (outIsNew || (earlier->size() < kValueSize && UndoText::isLastField(*earlier))) &&
        editor.lostValues().size() <= 1;
    if (!canBeUndone) {
        return Outcome::kFailed;
    }
    outUndo = undo;
    const bool done = editor.lines() == lines || text.store(headOf(text.content()), editor.lines());
    return done ? Outcome::kDone : Outcome::kFailed;
}

bool IniFiles::removeIniEntry(const char* undoText, InstallerUI* ui) {
    constexpr std::size_t kFields = 5;
    const std::vector<std::string_view> fields = UndoText::split(undoText, kFields);
    const std::string_view kind = fields.empty() ? "" : fields[0];
    const bool isRestore = kind == kReplace && fields.size() == kFields;
    if (!isRestore && (kind != kCreate || fields.size() < kFields - 1)) {
        return false;
    }
    const Entry entry{std::string(fields[1]), std::string(fields[2]), std::string(fields[3]),
                      std::string(isRestore ? fields[4] : "")};
    if (!files_.exists(entry.file.c_str())) {
        return isRestore || tell(true, "Remove ", "", entry, ui);
    }
    const bool done = writeIniLine(entry.file.c_str(), entry.section.c_str(), entry.key.c_str(),
                                   isRestore ? entry.value.c_str() : nullptr, nullptr);
    return isRestore ? tell(done, "Restore ", "FAILED to restore ", entry, ui)
                     : tell(done, "Remove ", "FAILED to remove ", entry, ui);
}

bool IniFiles::tell(bool done, const char* doneWord, const char* failedWord, const Entry& entry,
                    InstallerUI* ui) {
    const std::string line =
        (done ? doneWord : failedWord) + ('[' + entry.section + "]/" + entry.key + " in " + entry.file);
    Report report(ui, &errors_);
    report.addLine(line, false);
    if (!done) {
        report.addError(line);
    }
    return done;
}
