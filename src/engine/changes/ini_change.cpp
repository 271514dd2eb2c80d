#include "engine/changes/ini_change.h"

#include <algorithm>
#include <unordered_set>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/change_record.h"
#include "engine/changes/element_groups.h"
#include "engine/changes/former_state.h"
#include "engine/changes/removed_files.h"
#include "engine/changes/same_path.h"
#include "engine/changes/text_file.h"
#include "engine/description_tags.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/written_path.h"

namespace IniText {

namespace {

bool isHeader(std::string_view line) {
    return line.starts_with('[') && line.find(']') != std::string_view::npos;
}

std::string_view headerName(std::string_view line) {
    return line.substr(1, line.rfind(']') - 1);
}

}  // namespace

std::string_view valueIn(std::string_view text) {
    text = OUtils::trimWhiteSpace(text);
    const bool isQuoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back();
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::vector<Entry> entriesOf(const Lines& lines, std::string_view section) {
    const std::string_view name = OUtils::trimWhiteSpace(section);
    std::vector<Entry> entries;
    std::unordered_set<std::string> seen;
    bool isInside = false;
    for (const std::string_view raw : lines) {
        const std::string_view line = OUtils::trimWhiteSpace(raw);
        if (isHeader(line)) {
            if (isInside) {
                break;
            }
            isInside = OUtils::equalsIgnoreCase(OUtils::trimWhiteSpace(headerName(line)), name);
            continue;
        }
        const std::size_t sign = line.find('=');
        if (!isInside || line.starts_with(';') || sign == std::string_view::npos) {
            continue;
        }
        const std::string_view key = OUtils::trimWhiteSpace(line.substr(0, sign));
        if (seen.insert(OUtils::toLowerAscii(key)).second) {
            entries.push_back({key, valueIn(line.substr(sign + 1))});
        }
    }
    return entries;
}

std::optional<std::string_view> valueOf(const Lines& lines, std::string_view section, std::string_view key) {
    const std::string_view name = OUtils::trimWhiteSpace(key);
    for (const Entry& entry : entriesOf(lines, section)) {
        if (OUtils::equalsIgnoreCase(entry.key, name)) {
            return entry.value;
        }
    }
    return std::nullopt;
}

Editor::Editor(const Edit& edit) : edit_(edit), header_('[' + std::string(edit.section) + ']') {
    if (edit.isWrite()) {
        newLine_.append(*edit.key).append("=").append(*edit.value);
    }
}

void Editor::run(const Lines& lines) {
    lines_.reserve(lines.size() + 2);
    for (const std::string_view line : lines) {
        if (done_) {
            keep(line);
        } else {
            takeLine(line);
        }
    }
    if (!done_ && edit_.isWrite()) {
        finish();
    }
}

void Editor::takeLine(std::string_view line) {
    const std::size_t sign = line.find('=');
    const bool isPassedOver = line.empty() || line.front() == ';';
    if (!isPassedOver && isHeader(line)) {
        takeHeader(line);
    } else if (!isPassedOver && sign != std::string_view::npos && isTarget(currentSection_)) {
        takeKey(line, sign);
    } else {
        keep(line);
    }
}

void Editor::takeHeader(std::string_view line) {
    const std::string_view previousSection = currentSection_;
    currentSection_ = headerName(line);
    if (edit_.isWrite() && isTarget(previousSection)) {
        insert(beforeLine_ != std::string_view::npos ? beforeLine_ : lastLine_ + 1);
        done_ = true;
        keep(line);
        return;
    }
    if (!isTarget(currentSection_)) {
        keep(line);
    } else if (edit_.key) {
        lastLine_ = lines_.size();
        keep(line);
    }
}

void Editor::takeKey(std::string_view line, std::size_t sign) {
    const std::string_view name = line.substr(0, sign);
    if (!edit_.key) {
        return;  // goes with its section
    }
    // Deliberate: a key that is to go in front of its own name doesn't match, and is there twice afterwards.
    if (name == edit_.beforeKey) {
        beforeLine_ = lines_.size();
    } else if (isMatch(line, sign)) {
        takeMatch(line, sign);
        return;
    }
    lastLine_ = lines_.size();
    keep(line);
}

bool Editor::isMatch(std::string_view line, std::size_t sign) const {
    std::string_view value = line.substr(sign + 1);
    if (value.ends_with('\r')) {
        value.remove_suffix(1);
    }
    return line.substr(0, sign) == edit_.key && (!edit_.onlyValue || value == edit_.onlyValue);
}

void Editor::takeMatch(std::string_view line, std::size_t sign) {
    lostValues_.push_back(line.substr(sign + 1));
    done_ = !edit_.beforeKey;
    if (done_ && edit_.value) {
        // A return that the system's line ends don't have is part of the line's own.
        replacement_ = newLine_ + (line.ends_with('\r') ? "\r" : "");
        keep(replacement_);
    }
}

void Editor::insert(std::size_t position) {
    const std::size_t bounded = std::min(position, lines_.size());
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(bounded), newLine_);
}

void Editor::finish() {
    if (!isTarget(currentSection_)) {
        keep(header_);
    }
    insert(std::min(beforeLine_, lines_.size()));
}

}  // namespace IniText

namespace {

using ActionLogFormat::kCreate;
using ActionLogFormat::kNone;
using ActionLogFormat::kReplace;
using IniText::Lines;
using Entry = IniChange::Entry;

constexpr std::string_view kUtf8Mark = "\xef\xbb\xbf";

// A mark at the front belongs to the file and not to its first line.
std::string_view headOf(std::string_view content) {
    return content.substr(0, content.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0);
}

// Bytes put between 16-bit characters would spoil them.
bool isWide(std::string_view content) {
    return content.starts_with("\xff\xfe") || content.starts_with("\xfe\xff");
}

// A file with its lines, if it can be edited; one that is missing has none.
class IniFile {
public:
    IniFile(platform::FileSystem& files, std::string_view path) : text_(files, std::string(path)) {}

    bool load() {
        if (text_.load() == TextFile::State::kUnreadable) {
            reason_ = text_.reason();
            return false;
        }
        if (isWide(text_.content())) {
            reason_ = "its text has 16-bit characters";
            return false;
        }
        const std::string_view content = text_.content();
        lines_ = splitTextLines(content.substr(headOf(content).size()));
        return true;
    }
    const Lines& lines() const { return lines_; }
    std::string_view content() const { return text_.content(); }
    bool store(const Lines& lines) {
        const bool done = lines == lines_ || text_.store(headOf(text_.content()), lines);
        reason_ = done ? "" : text_.reason();
        return done;
    }
    // Why the last of the two failed.
    const std::string& reason() const { return reason_; }

private:
    std::string reason_;
    TextFile text_;
    Lines lines_;
};

IniText::Edit editOf(const Entry& entry) {
    return {entry.section, entry.key, entry.value,
            entry.beforeKey.empty() ? std::nullopt : std::optional(entry.beforeKey)};
}

// Only such a key is found again by the walk over the lines.
bool isKey(std::string_view key) {
    return RecordText::isField(key) && key.find('=') == std::string_view::npos && key[0] != ';' &&
           key[0] != '[';
}

bool canBeWritten(const Entry& entry) {
    return entry.value && entry.value->find_first_of("\r\n") == std::string_view::npos &&
           RecordText::isField(entry.file) && RecordText::isField(entry.section) && isKey(entry.key);
}

// The value as the profile functions give it; where they wouldn't read the same from what is written back,
// with the quotes that keep it.
std::string_view valueToRestore(std::string_view text) {
    const std::string_view value = IniText::valueIn(text);
    return IniText::valueIn(value) == value ? value : OUtils::trimWhiteSpace(text);
}

// The value of the line that gives way; none when there is no such line, or it has no value. Another spelling
// of the key, which a reader of profiles would find first, gives nothing way and counts for nothing here:
// its value would otherwise be written over the undone line.
std::optional<std::string_view> earlierValue(const IniText::Editor& editor) {
    if (editor.lostValues().empty()) {
        return std::nullopt;
    }
    const std::string_view value = valueToRestore(editor.lostValues().front());
    return value.empty() ? std::nullopt : std::optional(value);
}

// None when the section is beyond the limits.
std::optional<std::vector<std::string>> valuesOf(const Lines& lines, std::string_view section) {
    std::vector<std::string> values;
    std::size_t listSize = 1;
    for (const IniText::Entry& entry : IniText::entriesOf(lines, section)) {
        listSize += entry.key.size() + 1;
        if (listSize > IniChange::kKeyListSize || entry.value.size() >= IniChange::kValueSize) {
            return std::nullopt;
        }
        values.emplace_back(entry.value);
    }
    return values;
}

enum class Outcome { kDone, kFailed, kPresent };

struct Attempt {
    Outcome outcome = Outcome::kFailed;
    bool isNew = true;
    std::string undo;
    std::string reason = "the section, the key or the value can't be written, or not be brought back";
};

// Fills in the fields of the record. False when they couldn't take the change back.
bool planUndo(const Entry& entry, const std::optional<std::string_view>& earlier, std::string& outUndo) {
    const std::string_view kind = earlier ? kReplace : kCreate;
    const std::string place = RecordText::join({kind, entry.file, entry.section, entry.key});
    const std::string undo = RecordText::join({place, earlier.value_or(*entry.value)});
    // Taking a new key back doesn't need its value, which the record may cut.
    if (!RecordText::fits(ActionLogFormat::kIni, earlier ? undo : place)) {
        return false;
    }
    if (earlier && (earlier->size() >= IniChange::kValueSize || !RecordText::isLastField(*earlier))) {
        return false;
    }
    outUndo = undo;
    return true;
}

// The record of a value that gives way is all that has it then. A line without a value isn't brought back:
// the undo takes out what is there.
bool writeRecord(ChangeRecord& record, const Attempt& planned, const IniFile& file,
                 const IniText::Editor& editor) {
    if (!planned.isNew) {
        return record.keep(ActionLogFormat::kIni, {planned.undo});
    }
    const bool takesLine = !editor.lostValues().empty() && editor.lines() != file.lines();
    return record.write(ActionLogFormat::kIni, {planned.undo},
                        takesLine ? FormerState::ofBytes(file.content()) : std::string());
}

void store(IniFile& file, const IniText::Editor& editor, ChangeRecord& record, Attempt& result) {
    if (!writeRecord(record, result, file, editor)) {
        result.reason = kUnrecordedReason;
        return;
    }
    const bool isStored = file.store(editor.lines());
    result.outcome = isStored ? Outcome::kDone : Outcome::kFailed;
    result.reason = file.reason();
    if (!isStored) {
        record.withdraw();
    }
}

Attempt attempt(platform::FileSystem& files, const Entry& entry, ChangeRecord& record) {
    Attempt result;
    IniFile file(files, entry.file);
    if (!canBeWritten(entry)) {
        return result;
    }
    if (!file.load()) {
        result.reason = file.reason();
        return result;
    }
    IniText::Editor editor(editOf(entry));
    editor.run(file.lines());
    const auto earlier = earlierValue(editor);
    result.isNew = !earlier;
    if (entry.isPath) {
        const auto values = valuesOf(file.lines(), entry.section);
        if (!values) {
            return result;
        }
        if (namesSameDirectory(files, *values, std::string(*entry.value))) {
            result.outcome = Outcome::kPresent;
            return result;
        }
    }
    // One record can't bring several lines of the key back.
    if (editor.lostValues().size() <= 1 && planUndo(entry, earlier, result.undo)) {
        store(file, editor, record, result);
    }
    return result;
}

bool reportEntry(Report& report, bool done, std::string_view doneWord, std::string_view failedWord,
                 const Entry& entry) {
    std::string line(done ? doneWord : failedWord);
    line.append("[")
        .append(entry.section)
        .append("]/")
        .append(entry.key)
        .append(" in ")
        .append(platform::writtenPath(entry.file));
    return report.addOutcome(done, line);
}

// A record as the undo reads it.
struct ParsedRecord {
    bool isUsable = false;
    bool isRestore = false;
    Entry entry{};

    explicit ParsedRecord(std::string_view fields) {
        constexpr std::size_t kFields = 5;
        const std::vector<std::string_view> parts = RecordText::split(fields, kFields);
        const std::string_view kind = parts.empty() ? "" : parts[0];
        isRestore = kind == kReplace && parts.size() == kFields;
        isUsable = isRestore || (kind == kCreate && parts.size() >= kFields - 1);
        if (isUsable) {
            entry = {parts[1], parts[2], parts[3],
                     parts.size() == kFields ? std::optional(parts[4]) : std::nullopt};
        }
    }
    std::string key() const {
        return RecordText::join({OUtils::normalizedPath(std::string(entry.file)), entry.section, entry.key});
    }
};

// Where the line was written again since, any line of the key is meant.
bool removeLine(IniFile& file, const Entry& entry) {
    if (entry.section.empty() || !file.load()) {
        return false;
    }
    IniText::Editor own({entry.section, entry.key, {}, {}, entry.value});
    own.run(file.lines());
    if (!own.lostValues().empty()) {
        return file.store(own.lines());
    }
    IniText::Editor any({entry.section, entry.key, {}, {}});
    any.run(file.lines());
    return file.store(any.lines());
}

bool directoryExists(platform::FileSystem& files, std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos || files.exists(path.substr(0, separator + 1));
}

bool applyEdit(IniFile& file, const IniText::Edit& change) {
    if (change.section.empty() || !file.load()) {
        return false;
    }
    IniText::Editor editor(change);
    editor.run(file.lines());
    return file.store(editor.lines());
}

// A line that has the value keeps its blanks and quotes.
bool restoreValue(IniFile& file, const Entry& entry) {
    if (entry.section.empty() || !file.load()) {
        return false;
    }
    IniText::Editor editor({entry.section, entry.key, entry.value, {}});
    editor.run(file.lines());
    return earlierValue(editor) == entry.value || file.store(editor.lines());
}

UndoResult takeBack(platform::FileSystem& files, Report& report, const ParsedRecord& record) {
    const Entry& entry = record.entry;
    IniFile file(files, entry.file);
    const bool done =
        record.isRestore ? restoreValue(file, entry) : !files.exists(entry.file) || removeLine(file, entry);
    reportEntry(report, done, record.isRestore ? "Restore " : "Remove ",
                record.isRestore ? "FAILED to restore " : "FAILED to remove ", entry);
    if (done) {
        return UndoResult::kDone;
    }
    report.addReason(entry.file, file.reason().empty() ? "the record names no section" : file.reason());
    return directoryExists(files, entry.file) ? UndoResult::kFailed : UndoResult::kGone;
}

}  // namespace

bool IniChange::apply() {
    return applyGroups(context_, "IniFiles", [this](std::int32_t child) { return applyChild(child); });
}

bool IniChange::applyChild(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const auto text = tags.requiredTextOf(node);
    const bool isComplete = tags.nameOf(node) == vocabulary::ElementName("Add") &&
                            tags.hasAttribute(node, "FileName") && tags.hasAttribute(node, "Section") &&
                            tags.hasAttribute(node, "Key") && text;
    if (!isComplete) {
        return true;
    }
    const std::string file = collapsedPath(tags.expandAttribute(node, "FileName"));
    const std::string section = tags.expandForSystem(tags.attribute(node, "Section"));
    const std::string key = tags.expandForSystem(tags.attribute(node, "Key"));
    const std::string value = tags.expandForSystem(text);
    const std::string beforeKey = tags.expandForSystem(tags.attribute(node, "BeforeKey"));
    const RecordedResult result =
        add(context_.machine.files, context_.report,
            {file, section, key, value, tags.hasAttribute(node, "IsPath"), beforeKey}, &context_.log);
    if (result.done) {
        return true;
    }
    context_.debugLog.line("ERROR: Updating INI: \"" + file + '"');
    if (!tags.hasAttribute(node, "IgnoreErrors")) {
        return false;
    }
    context_.log.writeRecord(ActionLogFormat::kIni, {result.undo});
    return true;
}

bool IniChange::undo(const LogRecord& record) {
    const ParsedRecord parsed(record.fields);
    platform::FileSystem& files = context_.machine.files;
    if (!parsed.isUsable || !undoneKeys_.insert(parsed.key()).second ||
        (!record.former.empty() && FormerState::ofFile(files, parsed.entry.file) == record.former)) {
        return true;
    }
    // Written into a file that the product itself had brought, a value would leave that file behind.
    if (removed_ != nullptr && removed_->contains(parsed.entry.file) && !files.exists(parsed.entry.file)) {
        return true;
    }
    return takeBack(files, context_.report, parsed) != UndoResult::kFailed;
}

RecordedResult IniChange::add(platform::FileSystem& files, Report& report, const Entry& entry,
                              ActionLogWriter* log) {
    ChangeRecord record(log);
    const Attempt result = attempt(files, entry, record);
    if (result.outcome == Outcome::kPresent) {
        record.write(ActionLogFormat::kIni, {kNone});
        return {true, std::string(kNone)};
    }
    const bool done = result.outcome == Outcome::kDone;
    reportEntry(report, done, result.isNew ? "Create " : "Replace ",
                result.isNew ? "FAILED to create " : "FAILED to replace ", entry);
    if (!done) {
        report.addReason(entry.file, result.reason);
    }
    return {done, result.undo};
}

bool IniChange::remove(platform::FileSystem& files, Report& report, std::string_view fields) {
    const ParsedRecord parsed(fields);
    return parsed.isUsable && takeBack(files, report, parsed) == UndoResult::kDone;
}

bool IniChange::write(platform::FileSystem& files, std::string_view file, const IniText::Edit& edit,
                      Mode mode) {
    switch (mode) {
        case Mode::kDeleteKey:
            return edit.key && editFile(files, file, {edit.section, edit.key, {}, {}});
        case Mode::kWriteValue:
            return edit.isWrite() && editFile(files, file, edit);
        case Mode::kDeleteSection:
            return editFile(files, file, {edit.section, {}, {}, {}});
        case Mode::kNone:
            break;
    }
    return true;
}

bool IniChange::editFile(platform::FileSystem& files, std::string_view file, const IniText::Edit& edit) {
    IniFile target(files, file);
    return applyEdit(target, edit);
}
