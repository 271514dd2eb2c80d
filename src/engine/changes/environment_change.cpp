#include "engine/changes/environment_change.h"

#include <algorithm>
#include <vector>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/change_record.h"
#include "engine/changes/element_groups.h"
#include "engine/changes/former_state.h"
#include "engine/changes/same_path.h"
#include "engine/description_tags.h"
#include "engine/report.h"
#include "platform/registry.h"
#include "platform/shell_objects.h"
#include "platform/system_environment.h"

namespace {

using ActionLogFormat::kAdd;
using ActionLogFormat::kCreate;
using ActionLogFormat::kNone;
using ActionLogFormat::kReplace;
using platform::kSystemEnvironmentKey;
using Entry = EnvironmentChange::Entry;
using Mode = EnvironmentChange::Mode;
using UndoneRecords = EnvironmentChange::UndoneRecords;
using Value = EnvironmentChange::Value;
using State = EnvironmentChange::State;

constexpr auto kRoot = platform::RegistryRoot::kLocalMachine;
constexpr auto kView = platform::RegistryView::kNative;
constexpr char kListSeparator = ';';

struct NamedMode {
    vocabulary::ElementName element;
    Mode mode;
};

constexpr NamedMode kModes[] = {
    {"Replace", Mode::kReplace},
    {"Append", Mode::kAppend},
    {"Insert", Mode::kInsert},
};

std::optional<Mode> modeOf(std::string_view element) {
    const auto* found = std::ranges::find(kModes, element, &NamedMode::element);
    return found == std::end(kModes) ? std::nullopt : std::optional(found->mode);
}

// Of a run of separators keeps one.
std::string collapsed(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c != kListSeparator || result.empty() || result.back() != kListSeparator) {
            result += c;
        }
    }
    return result;
}

std::string withoutQuotes(std::string_view text) {
    std::string result(text);
    std::erase(result, '"');
    return result;
}

std::string withoutOuterQuotes(std::string_view text) {
    if (!text.empty() && text.front() == '"') {
        text.remove_prefix(1);
    }
    if (!text.empty() && text.back() == '"') {
        text.remove_suffix(1);
    }
    return std::string(text);
}

bool holdsDirectory(platform::FileSystem& files, const std::string& list, std::string_view directory) {
    const std::vector<std::string> entries = OUtils::splitText(withoutQuotes(list), kListSeparator);
    return namesSameDirectory(files, entries, withoutOuterQuotes(directory));
}

// What an entry would write and how it would be taken back. The missing blanks in the words of failure are
// deliberate: the lines are fixed.
struct Plan {
    std::string value;
    std::string undo;
    std::string added = {};  // the text that joins a list
    bool isPossible = false;
    bool isReplacement = false;  // of a value that is there
    bool isPresent = false;      // the directory is there already
    std::string_view doneWord = "Add to ";
    std::string_view failedWord = "FAILED to add to";
};

struct Present {
    State state;
    Value value;

    bool canBeChanged() const {
        return state != State::kUnreadable && value.text.size() <= EnvironmentChange::kValueLimit;
    }
};

bool fitsRecord(const std::string& undo) {
    return RecordText::fits(ActionLogFormat::kEnvironment, undo);
}

Plan planReplacement(const Entry& entry, const Present& present) {
    const bool isNew = present.state == State::kAbsent;
    Plan plan;
    plan.value = entry.value.value_or("");
    plan.isReplacement = !isNew;
    plan.undo = isNew ? RecordText::join({kCreate, entry.name})
                      : RecordText::join({kReplace, entry.name, present.value.text});
    plan.isPossible = entry.value && present.canBeChanged() && RecordText::isField(entry.name) &&
                      RecordText::isLastField(present.value.text) && fitsRecord(plan.undo);
    plan.doneWord = isNew ? "Create " : "Replace ";
    plan.failedWord = isNew ? "FAILED to create " : "FAILED to replace";
    return plan;
}

// What the record of a text at the end says: a separator at its own end would make it one in front.
std::string withoutLastSeparators(const std::string& text) {
    const std::string result = text.substr(0, text.find_last_not_of(kListSeparator) + 1);
    return RecordText::isLastField(result) ? result : text;
}

Plan planJoin(platform::FileSystem& files, const Entry& entry, const Present& present) {
    Plan plan;
    std::string added(entry.value.value_or(""));
    plan.value = added;
    plan.isPossible = entry.value && present.canBeChanged() && RecordText::isField(entry.name);
    const bool inFront = entry.mode == Mode::kInsert && present.state == State::kFound;
    if (plan.isPossible && present.state == State::kFound) {
        const std::string& list = present.value.text;
        if (entry.isPath && holdsDirectory(files, list, added)) {
            plan.isPresent = true;
            return plan;
        }
        plan.value = collapsed(inFront ? added + kListSeparator + list : list + kListSeparator + added);
        // The undo looks for the text as the variable holds it.
        added = collapsed(inFront ? added + kListSeparator : added);
    }
    const std::string recorded = inFront ? added : withoutLastSeparators(added);
    plan.undo = RecordText::join({kAdd, entry.name, recorded});
    plan.added = recorded;
    plan.isPossible = plan.isPossible && RecordText::isLastField(recorded) && fitsRecord(plan.undo);
    return plan;
}

bool isInFront(std::string_view addedText) {
    return addedText.ends_with(kListSeparator);
}

// The text without separators at its ends.
std::string_view entryIn(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kListSeparator);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kListSeparator) - first + 1);
}

// Where the list has these entries, between separators or ends of the list; npos when it doesn't.
std::size_t findEntries(std::string_view list, std::string_view entries, bool takesFirst) {
    const auto isWhole = [&](std::size_t start) {
        const std::size_t end = start + entries.size();
        return (start == 0 || list[start - 1] == kListSeparator) &&
               (end == list.size() || list[end] == kListSeparator);
    };
    std::size_t found = std::string_view::npos;
    for (std::size_t start = list.find(entries); start != std::string_view::npos;
         start = list.find(entries, start + 1)) {
        if (isWhole(start)) {
            found = start;
            if (takesFirst) {
                break;
            }
        }
    }
    return found;
}

// Takes an added text out of a list. No entry that only contains it is touched, and no empty entry stays in
// the middle: to most readers that would be the present directory. False when the list hasn't got it.
bool takeOut(std::string& list, std::string_view addedText) {
    const std::string_view entries = entryIn(addedText);
    const std::size_t start = findEntries(list, entries, isInFront(addedText));
    if (start == std::string::npos) {
        return false;
    }
    list.erase(start, entries.size());
    if (start < list.size() && (start == 0 || list[start - 1] == kListSeparator)) {
        list.erase(start, 1);
    }
    return true;
}

// A value that didn't exist before is taken as it is; other additions collapse its separators later.
bool takeOutInEitherForm(std::string& list, const std::string& addedText) {
    return takeOut(list, addedText) || takeOut(list, collapsed(addedText));
}

// A list that has the entry already: the undo would take that one out.
std::string formerListOf(const Plan& plan, const Present& present) {
    std::string list = present.value.text;
    return !plan.added.empty() && takeOutInEitherForm(list, plan.added)
               ? FormerState::ofBytes(present.value.text)
               : std::string();
}

// The record of a replacement is all that has the value then.
bool writePlanned(ChangeRecord& record, const Plan& plan, const Present& present) {
    return plan.isReplacement
               ? record.keep(ActionLogFormat::kEnvironment, {plan.undo})
               : record.write(ActionLogFormat::kEnvironment, {plan.undo}, formerListOf(plan, present));
}

UndoResult resultOf(int status, UndoneRecords& undone) {
    undone.status = status;
    return status == platform::kRegOk ? UndoResult::kDone : UndoResult::kFailed;
}

UndoResult unreadable(const Value& present, UndoneRecords& undone) {
    undone.status = present.status;
    return UndoResult::kFailed;
}

// The value may be of a time when the product had joined its texts already.
UndoResult restore(platform::Registry& registry, std::string_view name, const std::string& text,
                   UndoneRecords& undone) {
    undone.isRestored = true;
    Value present;
    if (EnvironmentChange::read(registry, name, present) == State::kUnreadable) {
        return unreadable(present, undone);
    }
    present.text = text;
    for (const std::string& joined : undone.joinedTexts) {
        takeOutInEitherForm(present.text, joined);
    }
    return resultOf(EnvironmentChange::write(registry, name, present), undone);
}

UndoResult removeVariable(platform::Registry& registry, std::string_view name, const std::string&,
                          UndoneRecords& undone) {
    undone.isRestored = true;
    Value present;
    return EnvironmentChange::read(registry, name, present) == State::kAbsent
               ? UndoResult::kGone
               : resultOf(EnvironmentChange::erase(registry, name), undone);
}

UndoResult removeText(platform::Registry& registry, std::string_view name, const std::string& text,
                      UndoneRecords& undone) {
    undone.joinedTexts.push_back(text);
    // A text that joined a present value left a separator, or has one.
    undone.wasAbsent = undone.wasAbsent || !isInFront(text);
    Value present;
    const State state = EnvironmentChange::read(registry, name, present);
    if (state != State::kFound) {
        return state == State::kAbsent ? UndoResult::kGone : unreadable(present, undone);
    }
    if (!text.empty() && !takeOutInEitherForm(present.text, text)) {
        return UndoResult::kGone;
    }
    if (present.text.empty() && undone.wasAbsent) {
        return resultOf(EnvironmentChange::erase(registry, name), undone);
    }
    // Nothing was added.
    return text.empty() ? UndoResult::kDone
                        : resultOf(EnvironmentChange::write(registry, name, present), undone);
}

struct Undo {
    std::string_view kind;
    UndoResult (*run)(platform::Registry& registry, std::string_view name, const std::string& text,
                      UndoneRecords& undone);
    std::string_view doneWord;
    std::string_view failedWord;
};

constexpr Undo kUndos[] = {
    {kReplace, restore, "Restore ", "FAILED to restore "},
    {kCreate, removeVariable, "Remove ", "FAILED to remove "},
    {kAdd, removeText, "Erase from ", "FAILED to erase from "},
};

std::string lineOf(bool done, std::string_view doneWord, std::string_view failedWord, std::string_view name) {
    return std::string(done ? doneWord : failedWord).append(name);
}

// A record as the undo reads it.
struct ParsedRecord {
    const Undo* undo = nullptr;  // null: of another kind
    std::string_view name;       // empty in a damaged record, which takes nothing back
    std::string_view text;

    explicit ParsedRecord(std::string_view fields) {
        std::vector<std::string_view> parts = RecordText::split(fields, 3);
        parts.resize(3);
        const auto* found = std::ranges::find(kUndos, parts[0], &Undo::kind);
        undo = found == std::end(kUndos) ? nullptr : found;
        name = parts[1];
        text = parts[2];
    }
    bool isUsable() const { return undo != nullptr && !name.empty(); }
};

bool holds(platform::Registry& registry, std::string_view name, std::string_view former) {
    Value present;
    return !former.empty() && EnvironmentChange::read(registry, name, present) == State::kFound &&
           FormerState::ofBytes(present.text) == former;
}

UndoResult takeBack(platform::Registry& registry, Report& report, const ParsedRecord& record,
                    UndoneRecords& undone) {
    const Undo& undo = *record.undo;
    undone.status = platform::kRegOk;
    const UndoResult result = undo.run(registry, record.name, std::string(record.text), undone);
    const bool done = result == UndoResult::kDone;
    report.addOutcome(done, lineOf(done, undo.doneWord, undo.failedWord, record.name));
    report.addRegistryReason(record.name, undone.status);
    return result;
}

}  // namespace

bool EnvironmentChange::apply() {
    applied_ = false;
    const bool succeeded =
        applyGroups(context_, "Environment", [this](std::int32_t child) { return applyChild(child); });
    return succeeded && (!applied_ || broadcast(context_.machine.shell, context_.report));
}

bool EnvironmentChange::applyChild(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const std::optional<Mode> mode = modeOf(tags.nameOf(node));
    const auto text = tags.requiredTextOf(node);
    if (!mode || !tags.hasAttribute(node, "VarName") || !text) {
        return true;
    }
    const std::string name = tags.expandAttribute(node, "VarName");
    const std::string value = tags.expand(text);
    const Entry entry = {name, value, *mode, tags.hasAttribute(node, "IsPath")};
    const RecordedResult result = add(context_.machine, context_.report, entry, &context_.log);
    if (!result.done) {
        context_.debugLog.line("ERROR: Updating ENV: " + name + "=\"" + value + '"');
        return false;
    }
    // Also for an entry that was there already.
    applied_ = true;
    return true;
}

bool EnvironmentChange::undo(const LogRecord& record) {
    undone_ = true;
    const ParsedRecord parsed(record.fields);
    if (!parsed.isUsable()) {
        return true;
    }
    UndoneRecords& undone = undoneRecords_[OUtils::toLowerAscii(parsed.name)];
    // What other records have taken out may have made that of the list.
    const bool wasNotMade =
        undone.joinedTexts.empty() && holds(context_.machine.registry, parsed.name, record.former);
    return undone.isRestored || wasNotMade ||
           takeBack(context_.machine.registry, context_.report, parsed, undone) != UndoResult::kFailed;
}

bool EnvironmentChange::finishUndo() {
    if (!undone_) {
        return true;
    }
    context_.report.setStatusWord(WordKey("UninstallStatusEnvironment"));
    return broadcast(context_.machine.shell, context_.report);
}

bool EnvironmentChange::takeOut(std::string& list, const std::string& addedText) {
    return takeOutInEitherForm(list, addedText);
}

RecordedResult EnvironmentChange::add(const platform::Platform& machine, Report& report, const Entry& entry,
                                      ActionLogWriter* log) {
    ChangeRecord record(log);
    const auto recordNothing = [&record] {
        record.write(ActionLogFormat::kEnvironment, {kNone});
        return RecordedResult{true, std::string(kNone)};
    };
    if (std::ranges::find(kModes, entry.mode, &NamedMode::mode) == std::end(kModes)) {
        return recordNothing();
    }
    Present present{};
    present.state = read(machine.registry, entry.name, present.value);
    const Plan plan = entry.mode == Mode::kReplace ? planReplacement(entry, present)
                                                   : planJoin(machine.files, entry, present);
    if (plan.isPresent) {
        return recordNothing();
    }
    const bool isRecorded = plan.isPossible && writePlanned(record, plan, present);
    const int status = isRecorded
                           ? write(machine.registry, entry.name, {plan.value, present.value.isExpandable, 0})
                           : platform::kRegBadArgument;
    const bool done = status == platform::kRegOk;
    if (isRecorded && !done) {
        record.withdraw();
    }
    const std::string line = lineOf(done, plan.doneWord, plan.failedWord, entry.name);
    if (entry.mode != Mode::kInsert) {
        report.addOutcome(done, line);
    } else if (!done) {
        report.addError(line);  // an insertion never has a line
    }
    const bool isRead = present.value.status == platform::kRegOk || present.state == State::kAbsent;
    if (!isRead) {
        report.addRegistryReason(entry.name, present.value.status);
    } else if (!plan.isPossible) {
        report.addReason(entry.name, "its value can't be read, or is too long to be brought back");
    } else if (!isRecorded) {
        report.addReason(entry.name, kUnrecordedReason);
    } else {
        report.addRegistryReason(entry.name, status);
    }
    return {done, plan.isPossible ? plan.undo : std::string()};
}

bool EnvironmentChange::remove(const platform::Platform& machine, Report& report, std::string_view fields) {
    const ParsedRecord parsed(fields);
    if (!parsed.isUsable()) {
        return parsed.undo != nullptr;
    }
    UndoneRecords alone;
    return takeBack(machine.registry, report, parsed, alone) == UndoResult::kDone;
}

bool EnvironmentChange::broadcast(platform::ShellObjects& shell, Report& report) {
    const bool done = shell.broadcastEnvironment();
    if (!done) {
        report.addError("FAILED to make the changed environment known");
    }
    return done;
}

EnvironmentChange::State EnvironmentChange::read(platform::Registry& registry, std::string_view name,
                                                 Value& outValue) {
    outValue = {};
    platform::RegistryValue value;
    const int status = registry.readValue(kRoot, kSystemEnvironmentKey, kView, name, value);
    outValue.status = status;
    if (status == platform::kRegNotFound) {
        return State::kAbsent;
    }
    const bool isExpandable = value.type == platform::kRegExpandString;
    const bool isText = value.type == platform::kRegString || isExpandable;
    if (status != platform::kRegOk || !isText || value.data.find('\0') != std::string::npos) {
        return State::kUnreadable;
    }
    outValue = {std::move(value.data), isExpandable};
    return State::kFound;
}

int EnvironmentChange::write(platform::Registry& registry, std::string_view name, const Value& value) {
    const platform::RegistryValue text{value.isExpandable ? platform::kRegExpandString : platform::kRegString,
                                       value.text};
    int status = registry.writeValue(kRoot, kSystemEnvironmentKey, kView, name, text);
    int created = 0;
    if (status == platform::kRegNotFound &&
        registry.createKey(kRoot, kSystemEnvironmentKey, kView, created) == platform::kRegOk) {
        status = registry.writeValue(kRoot, kSystemEnvironmentKey, kView, name, text);
    }
    return status;
}

int EnvironmentChange::erase(platform::Registry& registry, std::string_view name) {
    return registry.deleteValue(kRoot, kSystemEnvironmentKey, kView, name);
}
