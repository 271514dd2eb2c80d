#include "engine/changes/text_looks.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/file_edit.h"
#include "engine/changes/former_state.h"
#include "engine/changes/ini_change.h"
#include "engine/changes/record_text.h"
#include "engine/changes/text_file.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"

namespace {

namespace Format = ActionLogFormat;

constexpr std::string_view kUtf8Mark = "\xef\xbb\xbf";

struct IniRecord {
    bool isRestore = false;
    std::string_view file;
    std::string_view section;
    std::string_view key;
    std::optional<std::string_view> value;

    // The same for all records of the key.
    std::string identity() const {
        return RecordText::join({OUtils::normalizedPath(std::string(file)), section, key});
    }
};

// None for a record that takes nothing back.
std::optional<IniRecord> iniRecordIn(std::string_view fields) {
    constexpr std::size_t kFields = 5;
    const std::vector<std::string_view> parts = RecordText::split(fields, kFields);
    if (parts.size() + 1 < kFields || parts[2].empty()) {
        return std::nullopt;
    }
    const bool isRestore = parts[0] == Format::kReplace;
    if (isRestore ? parts.size() < kFields : parts[0] != Format::kCreate) {
        return std::nullopt;
    }
    return IniRecord{isRestore, parts[1], parts[2], parts[3],
                     parts.size() == kFields ? std::optional(parts[4]) : std::nullopt};
}

// The values of the lines that the undo would find.
IniText::Lines valuesIn(const IniText::Lines& lines, const IniRecord& record,
                        std::optional<std::string_view> onlyValue) {
    IniText::Editor editor({record.section, record.key, {}, {}, onlyValue});
    editor.run(lines);
    return editor.lostValues();
}

class IniLooker : public RecordLooker {
public:
    explicit IniLooker(const LookContext& context) : files_(context.machine.files) {}

    void expect(const LogRecord& record) override {
        if (const auto parsed = iniRecordIn(record.fields)) {
            ++counts_[parsed->identity()];
        }
    }

    void beginWalk() override { decided_.clear(); }

    // Of several records of one key the first alone is taken back.
    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const auto parsed = iniRecordIn(record.fields);
        if (!parsed) {
            return;
        }
        const auto [known, isFirst] = decided_.try_emplace(parsed->identity());
        if (isFirst) {
            known->second = lookAt(*parsed, record.former);
        }
        outLooks.push_back(known->second);
    }

private:
    RecordLook lookAt(const IniRecord& record, std::string_view former) {
        RecordLook look;
        look.name = platform::writtenPath(record.file) + ": [" + std::string(record.section) + "]/" +
                    std::string(record.key);
        TextFile file(files_, std::string(record.file));
        switch (file.load()) {
            case TextFile::State::kMissing:
                break;
            case TextFile::State::kUnreadable:
                look.state = PlaceState::kUnreadable;
                look.note = file.reason();
                break;
            case TextFile::State::kLoaded:
                look.state = !former.empty() && FormerState::ofBytes(file.content()) == former
                                 ? PlaceState::kOthers
                                 : stateIn(file.content(), record);
                break;
        }
        return look;
    }

    PlaceState stateIn(std::string_view content, const IniRecord& record) {
        content.remove_prefix(content.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0);
        const IniText::Lines lines = splitTextLines(content);
        const IniText::Lines found = valuesIn(lines, record, std::nullopt);
        if (found.empty()) {
            return PlaceState::kAbsent;
        }
        if (record.isRestore) {
            const bool isFormer = IniText::valueIn(found.front()) == IniText::valueIn(*record.value);
            return isFormer ? PlaceState::kFormer : PlaceState::kAsMade;
        }
        const bool isValueKnown = record.value && counts_[record.identity()] < 2;
        return !isValueKnown || isValue(lines, record) ? PlaceState::kAsMade : PlaceState::kDifferent;
    }

    // The record may have cut a long value, and has lost white space at its end.
    bool isValue(const IniText::Lines& lines, const IniRecord& record) {
        const std::string_view value = OUtils::trimWhiteSpace(*record.value);
        for (const std::string_view line : valuesIn(lines, record, std::nullopt)) {
            const std::string_view present = OUtils::trimWhiteSpace(line);
            const bool isCut = record.file.size() + record.section.size() + record.key.size() +
                                   record.value->size() + kShortestRest >=
                               Format::kLineLimit;
            if (present == value || (isCut && present.starts_with(value))) {
                return true;
            }
        }
        return !valuesIn(lines, record, *record.value).empty();
    }

    // What a record has besides its texts: tag, kind, separators.
    static constexpr std::size_t kShortestRest =
        Format::kIni.size() + Format::kCreate.size() + 5 * sizeof(Format::kSeparator);

    platform::FileSystem& files_;
    std::map<std::string, int> counts_;
    std::map<std::string, RecordLook> decided_;
};

std::string joined(const TextLines& lines) {
    std::string text;
    for (const std::string_view line : lines) {
        text.append(line).append("\n");
    }
    return text;
}

class EditLooker : public RecordLooker {
public:
    explicit EditLooker(const LookContext& context) : files_(context.machine.files) {}

    // The scripts may go with the product.
    void expect(const LogRecord& record) override {
        const std::string_view path = FileEdit::scriptOf(record);
        if (path.empty() || scripts_.contains(std::string(path))) {
            return;
        }
        TextFile script(files_, std::string(path));
        if (script.load(OUtils::Links::kFollow) == TextFile::State::kLoaded) {
            scripts_.emplace(path, script.content());
        }
    }

    void beginWalk() override { texts_.clear(); }

    void look(const LogRecord& record, std::vector<RecordLook>& outLooks) override {
        const std::string_view path = FileEdit::editedFileOf(record);
        if (path.empty()) {
            return;
        }
        RecordLook look;
        look.name = platform::writtenPath(path);
        look.rule = UndoRule::kKeepsChanged;
        const auto [text, isFirst] = texts_.try_emplace(platform::pathIdentity(path));
        if (isFirst) {
            text->second = read(path);
        }
        lookAt(text->second, record, isFirst, look);
        outLooks.push_back(std::move(look));
    }

private:
    // A file as it would be when the records so far are undone.
    struct Text {
        TextFile::State state = TextFile::State::kMissing;
        std::string reason;
        std::string content;
    };

    Text read(std::string_view path) {
        TextFile file(files_, std::string(path));
        const TextFile::State state = file.load();
        return {state, file.reason(), file.content()};
    }

    void lookAt(Text& text, const LogRecord& record, bool isFirst, RecordLook& look) {
        if (text.state == TextFile::State::kMissing) {
            return;
        }
        if (text.state == TextFile::State::kUnreadable) {
            look.state = PlaceState::kUnreadable;
            look.note = text.reason;
        } else if (isFirst && !record.former.empty() && FormerState::ofBytes(text.content) == record.former) {
            look.state = PlaceState::kOthers;
        } else {
            lookForLines(text, FileEdit::scriptOf(record), look);
        }
    }

    void lookForLines(Text& text, std::string_view path, RecordLook& look) {
        const auto found = scripts_.find(std::string(path));
        const auto script =
            found == scripts_.end() ? std::nullopt : EditScript::parse(splitTextLines(found->second));
        if (!script) {
            look.state = PlaceState::kUnreadable;
            look.note = "the lines aren't known, because " + platform::writtenPath(path) + " can't be read";
            return;
        }
        const TextLines lines = splitTextLines(text.content);
        TextLines without;
        TextLines again;
        if (!script->revert(lines, without)) {
            lookForPlaces(!script->apply(lines, again), look);
            return;
        }
        look.state =
            script->apply(without, again) && again == lines ? PlaceState::kAsMade : PlaceState::kDifferent;
        look.note = look.state == PlaceState::kAsMade ? "" : "only some of its lines are there";
        text.content = joined(without);
    }

    // An edit is done, too, where the file hasn't got the lines that it looks for.
    static void lookForPlaces(bool areMissing, RecordLook& look) {
        if (areMissing) {
            look.state = PlaceState::kNotNeeded;
            look.note = "the lines that it looks for aren't there";
        }
    }

    platform::FileSystem& files_;
    std::map<std::string, std::string> scripts_;  // contents by path
    std::map<std::string, Text> texts_;           // by the identity of the path
};

}  // namespace

std::unique_ptr<RecordLooker> makeIniLooker(const LookContext& context) {
    return std::make_unique<IniLooker>(context);
}

std::unique_ptr<RecordLooker> makeEditLooker(const LookContext& context) {
    return std::make_unique<EditLooker>(context);
}
