#include "engine/changes/file_edit.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/change_record.h"
#include "engine/changes/element_groups.h"
#include "engine/changes/former_state.h"
#include "engine/changes/text_file.h"
#include "engine/description_tags.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"

namespace {

using ActionLogFormat::kAddAfter;
using Position = TextLines::difference_type;

bool isBlank(std::string_view line) {
    return OUtils::trimWhiteSpace(line).empty();
}

std::optional<std::size_t> countOf(std::string_view line) {
    const std::string_view text = OUtils::trimWhiteSpace(line);
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && count > 0;
    return isNumber ? std::optional(count) : std::nullopt;
}

// Takes the block at `position`, which moves past it.
bool takeBlock(const TextLines& lines, std::size_t& position, TextLines& outBlock) {
    if (position == lines.size()) {
        return false;
    }
    const auto count = countOf(lines[position++]);
    if (!count || *count > lines.size() - position) {
        return false;
    }
    const auto first = lines.begin() + static_cast<Position>(position);
    outBlock.assign(first, first + static_cast<Position>(*count));
    position += *count;
    return std::ranges::all_of(outBlock,
                               [](std::string_view line) { return line.size() <= EditScript::kLineLimit; });
}

// For each line of the block: how many lines up to it repeat the block's beginning. With that table a search
// looks at no line of the file more than twice, however alike the lines are.
std::vector<std::size_t> bordersOf(const TextLines& block) {
    std::vector<std::size_t> result(block.size(), 0);
    std::size_t length = 0;
    for (std::size_t i = 1; i < block.size(); ++i) {
        while (length > 0 && block[i] != block[length]) {
            length = result[length - 1];
        }
        length += block[i] == block[length] ? 1 : 0;
        result[i] = length;
    }
    return result;
}

// The position after the first occurrence of the block from `start` on.
std::optional<std::size_t> findEndOf(const TextLines& block, const TextLines& lines, std::size_t start) {
    const std::vector<std::size_t> borders = bordersOf(block);
    std::size_t length = 0;
    for (std::size_t i = start; i < lines.size(); ++i) {
        while (length > 0 && lines[i] != block[length]) {
            length = borders[length - 1];
        }
        length += lines[i] == block[length] ? 1 : 0;
        if (length == block.size()) {
            return i + 1;
        }
    }
    return std::nullopt;
}

bool holdsAt(const TextLines& lines, std::size_t position, const TextLines& block) {
    return block.size() <= lines.size() - position &&
           std::equal(block.begin(), block.end(), lines.begin() + static_cast<Position>(position));
}

void copyRange(const TextLines& lines, std::size_t first, std::size_t last, TextLines& outLines) {
    outLines.insert(outLines.end(), lines.begin() + static_cast<Position>(first),
                    lines.begin() + static_cast<Position>(last));
}

// Copies the lines. Looks for the search blocks one after the other and calls `edit` after each match; `edit`
// may advance the position. True when one of the calls changed something.
template <typename Edit>
bool walk(const std::vector<EditScript::Pair>& pairs, const TextLines& lines, TextLines& outLines,
          Edit edit) {
    outLines.clear();
    std::size_t position = 0;
    bool hasChanged = false;
    for (const EditScript::Pair& pair : pairs) {
        const auto end = findEndOf(pair.search, lines, position);
        if (!end) {
            break;
        }
        copyRange(lines, position, *end, outLines);
        position = *end;
        hasChanged = edit(pair, position) || hasChanged;
    }
    copyRange(lines, position, lines.size(), outLines);
    return hasChanged;
}

// What kept an edit from being made, and of which file.
struct Fault {
    std::string_view path;
    std::string reason;
};

// Nothing after a success.
std::optional<Fault> faultOfLoad(TextFile& file, std::string_view path, OUtils::Links links) {
    switch (file.load(links)) {
        case TextFile::State::kLoaded:
            return std::nullopt;
        case TextFile::State::kMissing:
            return Fault{path, "there is no such file"};
        case TextFile::State::kUnreadable:
            break;
    }
    return Fault{path, file.reason()};
}

// A text file and the script that edits it.
class EditedFile {
public:
    EditedFile(platform::FileSystem& files, std::string_view path, std::string_view scriptPath)
        : path_(path),
          scriptPath_(scriptPath),
          source_(files, std::string(scriptPath)),
          target_(files, std::string(path)) {}

    // Each gives nothing after a success.
    std::optional<Fault> load();
    std::optional<Fault> addLines(ChangeRecord& record, std::string_view fields);
    std::optional<Fault> removeLines();

private:
    std::optional<Fault> store(const TextLines& lines);
    std::string formerState();

    std::string_view path_;
    std::string_view scriptPath_;
    TextFile source_;
    TextFile target_;
    std::optional<EditScript> script_;
    TextLines lines_;
};

std::optional<Fault> EditedFile::load() {
    if (auto fault = faultOfLoad(source_, scriptPath_, OUtils::Links::kFollow)) {
        return fault;
    }
    script_ = EditScript::parse(splitTextLines(source_.content()));
    if (!script_) {
        return Fault{scriptPath_, "it isn't a list of edits"};
    }
    if (auto fault = faultOfLoad(target_, path_, OUtils::Links::kRefuse)) {
        return fault;
    }
    lines_ = splitTextLines(target_.content());
    return std::nullopt;
}

std::optional<Fault> EditedFile::store(const TextLines& lines) {
    return target_.store("", lines) ? std::nullopt : std::optional(Fault{path_, target_.reason()});
}

// A text that has the lines already: the undo would take those out.
std::string EditedFile::formerState() {
    TextLines without;
    return script_->revert(lines_, without) ? FormerState::ofBytes(target_.content()) : std::string();
}

std::optional<Fault> EditedFile::addLines(ChangeRecord& record, std::string_view fields) {
    if (!record.write(ActionLogFormat::kModifyFile, {fields}, formerState())) {
        return Fault{path_, std::string(kUnrecordedReason)};
    }
    TextLines changed;
    std::optional<Fault> fault = script_->apply(lines_, changed) ? store(changed) : std::nullopt;
    if (fault) {
        record.withdraw();
    }
    return fault;
}

std::optional<Fault> EditedFile::removeLines() {
    TextLines changed;
    return script_->revert(lines_, changed) ? store(changed) : std::nullopt;
}

std::optional<Fault> addLines(platform::FileSystem& files, std::string_view path, std::string_view script,
                              ActionLogWriter* log, std::string_view fields) {
    ChangeRecord record(log);
    EditedFile file(files, path, script);
    const std::optional<Fault> fault = file.load();
    return fault ? fault : file.addLines(record, fields);
}

std::optional<Fault> removeLines(platform::FileSystem& files, std::string_view path,
                                 std::string_view script) {
    EditedFile file(files, path, script);
    const std::optional<Fault> fault = file.load();
    return fault ? fault : file.removeLines();
}

// Kind, file and script; none for fields of another kind.
std::vector<std::string_view> fieldsOf(std::string_view fields) {
    constexpr std::size_t kFields = 3;
    std::vector<std::string_view> parts = RecordText::split(fields, kFields);
    return parts.size() < kFields || parts[0] != kAddAfter ? std::vector<std::string_view>() : parts;
}

bool reportEdit(Report& report, const std::optional<Fault>& fault, std::string_view work,
                std::string_view path) {
    report.addOutcome(!fault,
                      std::string(fault ? "FAILED : " : "").append(work).append(platform::writtenPath(path)));
    if (fault) {
        report.addReason(fault->path, fault->reason);
    }
    return !fault;
}

}  // namespace

std::optional<EditScript> EditScript::parse(const TextLines& lines) {
    std::vector<Pair> pairs;
    std::size_t position = 0;
    while (position < lines.size() && !isBlank(lines[position])) {
        Pair& pair = pairs.emplace_back();
        if (!takeBlock(lines, position, pair.search) || !takeBlock(lines, position, pair.addition)) {
            return std::nullopt;
        }
    }
    const bool isRestBlank =
        std::all_of(lines.begin() + static_cast<Position>(position), lines.end(), isBlank);
    return pairs.empty() || !isRestBlank ? std::nullopt : std::optional(EditScript(std::move(pairs)));
}

bool EditScript::apply(const TextLines& lines, TextLines& outLines) const {
    return walk(pairs_, lines, outLines, [&](const Pair& pair, std::size_t&) {
        copyRange(pair.addition, 0, pair.addition.size(), outLines);
        return true;
    });
}

bool EditScript::revert(const TextLines& lines, TextLines& outLines) const {
    return walk(pairs_, lines, outLines, [&](const Pair& pair, std::size_t& position) {
        const bool isThere = holdsAt(lines, position, pair.addition);
        position += isThere ? pair.addition.size() : 0;
        return isThere;
    });
}

bool FileEdit::apply() {
    return applyGroups(context_, "ModifyFiles", [this](std::int32_t child) { return applyChild(child); });
}

bool FileEdit::applyChild(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const auto text = tags.requiredTextOf(node);
    const bool isEdit = tags.nameOf(node) == vocabulary::ElementName("File") &&
                        tags.attribute(node, "Command") == vocabulary::WordName("AddAfter") &&
                        tags.hasAttribute(node, "Path") && text;
    if (!isEdit) {
        return true;
    }
    const std::string path = collapsedPath(tags.expandAttribute(node, "Path"));
    const std::string script = tags.expand(text);
    const bool isDone = add(context_.machine.files, context_.report, path, script, &context_.log).done;
    if (!isDone) {
        context_.debugLog.line("ERROR: Modifying files: \"" + path + '"');
    }
    return isDone;
}

bool FileEdit::undo(const LogRecord& record) {
    return wasNotMade(record) || remove(context_.machine.files, context_.report, record.fields);
}

// What other records have taken out may have made that of the file.
bool FileEdit::wasNotMade(const LogRecord& record) {
    const std::vector<std::string_view> parts = fieldsOf(record.fields);
    const bool isFirst = !parts.empty() && undoneFiles_.insert(platform::pathIdentity(parts[1])).second;
    return isFirst && !record.former.empty() &&
           FormerState::ofFile(context_.machine.files, parts[1]) == record.former;
}

RecordedResult FileEdit::add(platform::FileSystem& files, Report& report, std::string_view path,
                             std::string_view script, ActionLogWriter* log) {
    const std::string undo = RecordText::join({kAddAfter, path, script});
    const bool isRecordable = RecordText::isField(path) && RecordText::isField(script) &&
                              RecordText::fits(ActionLogFormat::kModifyFile, undo);
    const std::optional<Fault> fault = isRecordable ? addLines(files, path, script, log, undo)
                                                    : Fault{path, "the action log can't hold its record"};
    return {reportEdit(report, fault, "Modifying ", path), isRecordable ? undo : std::string()};
}

bool FileEdit::remove(platform::FileSystem& files, Report& report, std::string_view fields) {
    const std::vector<std::string_view> parts = fieldsOf(fields);
    if (parts.empty()) {
        return false;
    }
    const std::optional<Fault> fault =
        files.exists(parts[1]) ? removeLines(files, parts[1], parts[2]) : std::nullopt;
    return reportEdit(report, fault, "Undoing modifications to ", parts[1]);
}

std::string_view FileEdit::scriptOf(const LogRecord& record) {
    const std::vector<std::string_view> parts = fieldsOf(record.fields);
    return parts.empty() ? std::string_view() : parts[2];
}

std::string_view FileEdit::editedFileOf(const LogRecord& record) {
    const std::vector<std::string_view> parts = fieldsOf(record.fields);
    return parts.empty() ? std::string_view() : parts[1];
}
