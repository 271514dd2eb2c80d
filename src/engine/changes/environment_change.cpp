#include "engine/changes/environment_change.h"

#include <algorithm>
#include <vector>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/element_groups.h"
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
using State = EnvironmentChange::State;

constexpr auto kRoot = platform::RegistryRoot::kLocalMachine;
constexpr auto kView = platform::RegistryView::kNative;

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
        if (c != ';' || result.empty() || result.back() != ';') {
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
    const std::vector<std::string> entries = OUtils::splitText(withoutQuotes(list), ';');
    return namesSameDirectory(files, entries, withoutOuterQuotes(directory));
}

// What an entry would write and how it would be taken back. The missing blanks in the words of failure are
// deliberate: the lines are fixed.
struct Plan {
    std::string value;
    std::string undo;
    bool isPossible = false;
    bool isPresent = false;  // the directory is there already
    std::string_view doneWord = "Add to ";
    std::string_view failedWord = "FAILED to add to";
};

struct Present {
    State state;
    std::string value;

    bool canBeChanged() const {
        return state != State::kUnreadable && value.size() <= EnvironmentChange::kValueLimit;
    }
};

bool fitsRecord(const std::string& undo) {
    return RecordText::fits(ActionLogFormat::kEnvironment, undo);
}

Plan planReplacement(const Entry& entry, const Present& present) {
    const bool isNew = present.state == State::kAbsent;
    Plan plan;
    plan.value = entry.value.value_or("");
    plan.undo = isNew ? RecordText::join({kCreate, entry.name})
                      : RecordText::join({kReplace, entry.name, present.value});
    plan.isPossible = entry.value && present.canBeChanged() && RecordText::isField(entry.name) &&
                      RecordText::isLastField(present.value) && fitsRecord(plan.undo);
    plan.doneWord = isNew ? "Create " : "Replace ";
    plan.failedWord = isNew ? "FAILED to create " : "FAILED to replace";
    return plan;
}

Plan planJoin(platform::FileSystem& files, const Entry& entry, const Present& present) {
    Plan plan;
    std::string added(entry.value.value_or(""));
    plan.value = added;
    plan.isPossible = entry.value && present.canBeChanged() && RecordText::isField(entry.name);
    if (plan.isPossible && present.state == State::kFound) {
        if (entry.isPath && holdsDirectory(files, present.value, added)) {
            plan.isPresent = true;
            return plan;
        }
        const bool inFront = entry.mode == Mode::kInsert;
        plan.value = collapsed(inFront ? added + ';' + present.value : present.value + ';' + added);
        // The undo looks for the text as the variable holds it.
        added = collapsed(inFront ? added + ';' : added);
    }
    plan.undo = RecordText::join({kAdd, entry.name, added});
    plan.isPossible = plan.isPossible && RecordText::isLastField(added) && fitsRecord(plan.undo);
    return plan;
}

bool restore(platform::Registry& registry, std::string_view name, std::string_view value) {
    std::string present;
    return EnvironmentChange::read(registry, name, present) != State::kUnreadable &&
           EnvironmentChange::write(registry, name, value);
}

bool removeVariable(platform::Registry& registry, std::string_view name, std::string_view) {
    return EnvironmentChange::erase(registry, name);
}

bool removeText(platform::Registry& registry, std::string_view name, std::string_view text) {
    std::string present;
    if (EnvironmentChange::read(registry, name, present) != State::kFound) {
        return false;
    }
    const std::size_t position = text.empty() ? std::string::npos : present.find(text);
    // A text that has gone leaves nothing to write. The separator of an appended one stays.
    return position == std::string::npos ||
           EnvironmentChange::write(registry, name, present.erase(position, text.size()));
}

struct Undo {
    std::string_view kind;
    bool (*run)(platform::Registry& registry, std::string_view name, std::string_view text);
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

}  // namespace

bool EnvironmentChange::apply() {
    applied_ = false;
    const bool succeeded =
        applyGroups(context_, "Environment", [this](std::int32_t child) { return applyChild(child); });
    if (succeeded && applied_) {
        broadcast(context_.machine.shell, context_.report);
    }
    return succeeded;
}

bool EnvironmentChange::applyChild(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const std::optional<Mode> mode = modeOf(tags.nameOf(node));
    const auto text = tags.textOf(node);
    if (!mode || !tags.hasAttribute(node, "VarName") || !text) {
        return true;
    }
    const std::string name = tags.expandAttribute(node, "VarName");
    const std::string value = tags.expand(text);
    const RecordedResult result =
        add(context_.machine, context_.report, {name, value, *mode, tags.hasAttribute(node, "IsPath")});
    if (!result.done) {
        context_.debugLog.line("ERROR: Updating ENV: " + name + "=\"" + value + '"');
        return false;
    }
    context_.log.writeRecord(ActionLogFormat::kEnvironment, {result.undo});
    // Also for an entry that was there already.
    applied_ = true;
    return true;
}

bool EnvironmentChange::undo(const LogRecord& record) {
    remove(context_.machine, context_.report, record.fields);
    undone_ = true;
    return true;
}

bool EnvironmentChange::finishUndo() {
    if (undone_) {
        context_.report.setStatus("Updating environment");
        broadcast(context_.machine.shell, context_.report);
    }
    return true;
}

RecordedResult EnvironmentChange::add(const platform::Platform& machine, Report& report, const Entry& entry) {
    if (std::ranges::find(kModes, entry.mode, &NamedMode::mode) == std::end(kModes)) {
        return {true, std::string(kNone)};
    }
    Present present{};
    present.state = read(machine.registry, entry.name, present.value);
    const Plan plan = entry.mode == Mode::kReplace ? planReplacement(entry, present)
                                                   : planJoin(machine.files, entry, present);
    if (plan.isPresent) {
        return {true, std::string(kNone)};
    }
    const bool done = plan.isPossible && write(machine.registry, entry.name, plan.value);
    const std::string line = lineOf(done, plan.doneWord, plan.failedWord, entry.name);
    if (entry.mode != Mode::kInsert) {
        report.addOutcome(done, line);
    } else if (!done) {
        report.addError(line);  // an insertion never has a line
    }
    return {done, plan.isPossible ? plan.undo : std::string()};
}

bool EnvironmentChange::remove(const platform::Platform& machine, Report& report, std::string_view fields) {
    std::vector<std::string_view> parts = RecordText::split(fields, 3);
    parts.resize(3);
    const auto* undo = std::ranges::find(kUndos, parts[0], &Undo::kind);
    if (undo == std::end(kUndos)) {
        return false;
    }
    const std::string_view name = parts[1];
    if (name.empty()) {
        return true;
    }
    const bool done = undo->run(machine.registry, name, parts[2]);
    return report.addOutcome(done, lineOf(done, undo->doneWord, undo->failedWord, name));
}

void EnvironmentChange::broadcast(platform::ShellObjects& shell, Report& report) {
    if (!shell.broadcastEnvironment()) {
        report.addError("FAILED to make the changed environment known");
    }
}

EnvironmentChange::State EnvironmentChange::read(platform::Registry& registry, std::string_view name,
                                                 std::string& outValue) {
    outValue.clear();
    platform::RegistryValue value;
    const int status = registry.readValue(kRoot, kSystemEnvironmentKey, kView, name, value);
    if (status == platform::kRegNotFound) {
        return State::kAbsent;
    }
    const bool isText = value.type == platform::kRegString || value.type == platform::kRegExpandString;
    if (status != platform::kRegOk || !isText || value.data.find('\0') != std::string::npos) {
        return State::kUnreadable;
    }
    outValue = std::move(value.data);
    return State::kFound;
}

bool EnvironmentChange::write(platform::Registry& registry, std::string_view name, std::string_view value) {
    const platform::RegistryValue text{platform::kRegString, std::string(value)};
    int status = registry.writeValue(kRoot, kSystemEnvironmentKey, kView, name, text);
    int created = 0;
    if (status == platform::kRegNotFound &&
        registry.createKey(kRoot, kSystemEnvironmentKey, kView, created) == platform::kRegOk) {
        status = registry.writeValue(kRoot, kSystemEnvironmentKey, kView, name, text);
    }
    return status == platform::kRegOk;
}

bool EnvironmentChange::erase(platform::Registry& registry, std::string_view name) {
    return registry.deleteValue(kRoot, kSystemEnvironmentKey, kView, name) == platform::kRegOk;
}
