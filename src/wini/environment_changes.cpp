#include "wini/environment_changes.h"

#include <string_view>
#include <vector>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "platform/registry.h"
#include "platform/shell_objects.h"
#include "platform/system_environment.h"
#include "wini/same_path.h"
#include "wini/undo_text.h"

namespace {

using ActionLogFormat::kAdd;
using ActionLogFormat::kCreate;
using ActionLogFormat::kEnvironment;
using ActionLogFormat::kNone;
using ActionLogFormat::kReplace;
using platform::kSystemEnvironmentKey;

constexpr auto kRoot = platform::RegistryRoot::kLocalMachine;
constexpr auto kView = platform::RegistryView::kNative;

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
    std::string result;
    for (const char c : text) {
        if (c != '"') {
            result += c;
        }
    }
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
    std::vector<std::string> entries;
    OUtils::splitText(withoutQuotes(list).c_str(), ';', entries);
    return namesSameDirectory(files, entries, withoutOuterQuotes(directory));
}

bool canBeChanged(EnvironmentRead state, const std::string& present) {
    return state != EnvironmentRead::kUnreadable && present.size() <= EnvironmentChanges::kValueLimit;
}

}  // namespace

EnvironmentRead EnvironmentChanges::readEnvironmentValue(const std::string& name, std::string& outValue) {
    outValue.clear();
    platform::RegistryValue value;
    const int status = registry_.readValue(kRoot, kSystemEnvironmentKey, kView, name.c_str(), value);
    if (status == platform::kRegNotFound) {
        return EnvironmentRead::kAbsent;
    }
    const bool isText = value.type == platform::kRegString || value.type == platform::kRegExpandString;
    if (status != platform::kRegOk || !isText || value.data.find('\0') != std::string::npos) {
        return EnvironmentRead::kUnreadable;
    }
    outValue = std::move(value.data);
    return EnvironmentRead::kFound;
}

bool EnvironmentChanges::writeEnvironmentValue(const std::string& name, const std::string& value) {
    const platform::RegistryValue text{platform::kRegString, value};
    int status = registry_.writeValue(kRoot, kSystemEnvironmentKey, kView, name.c_str(), text);
    int created = 0;
    if (status == platform::kRegNotFound &&
        registry_.createKey(kRoot, kSystemEnvironmentKey, kView, created) == platform::kRegOk) {
        status = registry_.writeValue(kRoot, kSystemEnvironmentKey, kView, name.c_str(), text);
    }
    return status == platform::kRegOk;
}

bool EnvironmentChanges::deleteEnvironmentValue(const std::string& name) {
    return registry_.deleteValue(kRoot, kSystemEnvironmentKey, kView, name.c_str()) == platform::kRegOk;
}

bool EnvironmentChanges::addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode,
                                             std::string& outUndo, InstallerUI* ui, bool isPath) {
    outUndo.clear();
    const std::string variable = name == nullptr ? "" : name;
    switch (mode) {
        case EnvironmentMode::kReplace:
            return replaceValue(variable, value, outUndo, ui);
        case EnvironmentMode::kAppend:
        case EnvironmentMode::kInsert:
            return joinValue(variable, value, mode, outUndo, ui, isPath);
    }
    outUndo = kNone;
    return true;
}

bool EnvironmentChanges::replaceValue(const std::string& name, const char* value, std::string& outUndo,
                                      InstallerUI* ui) {
    std::string present;
    const EnvironmentRead state = readEnvironmentValue(name, present);
    const bool isNew = state == EnvironmentRead::kAbsent;
    const std::string undo = isNew ? UndoText::of({kCreate, name}) : UndoText::of({kReplace, name, present});
    bool done = value != nullptr && canBeChanged(state, present) && UndoText::isField(name) &&
                UndoText::isLastField(isNew ? name : present) && UndoText::fitsRecord(kEnvironment, undo);
    if (done) {
        outUndo = undo;
        done = writeEnvironmentValue(name, value);
    }
    return isNew ? tell(done, "Create ", "FAILED to create ", name, ui)
                 : tell(done, "Replace ", "FAILED to replace", name, ui);
}

bool EnvironmentChanges::joinValue(const std::string& name, const char* value, EnvironmentMode mode,
                                   std::string& outUndo, InstallerUI* ui, bool isPath) {
    std::string present;
    const EnvironmentRead state = readEnvironmentValue(name, present);
    std::string added = value == nullptr ? "" : value;
    std::string joined = added;
    bool done = value != nullptr && canBeChanged(state, present) && UndoText::isField(name);
    if (done && state == EnvironmentRead::kFound) {
        if (isPath && holdsDirectory(files_, present, added)) {
            outUndo = kNone;
            return true;
        }
        const bool inFront = mode == EnvironmentMode::kInsert;
        joined = collapsed(inFront ? added + ';' + present : present + ';' + added);
        // As it stands in the variable, or the undo would not find it.
        added = collapsed(inFront ? added + ';' : added);
    }
    const std::string undo = UndoText::of({kAdd, name, added});
    done = done && UndoText::isLastField(added) && UndoText::fitsRecord(kEnvironment, undo);
    if (done) {
        outUndo = undo;
        done = writeEnvironmentValue(name, joined);
    }
    // A text that goes in front isn't told but for its failure.
    return tell(done, "Add to ", "FAILED to add to", name, mode == EnvironmentMode::kInsert ? nullptr : ui);
}

bool EnvironmentChanges::removeEnvironmentEntry(const char* undoText, InstallerUI* ui) {
    const std::vector<std::string_view> fields = UndoText::split(undoText, 3);
    const std::string_view kind = fields.empty() ? "" : fields[0];
    if (kind != kReplace && kind != kCreate && kind != kAdd) {
        return false;
    }
    const std::string name(fields.size() > 1 ? fields[1] : "");
    const std::string text(fields.size() > 2 ? fields[2] : "");
    if (name.empty()) {
        return true;
    }
    if (kind == kReplace) {
        return tell(restore(name, text), "Restore ", "FAILED to restore ", name, ui);
    }
    if (kind == kCreate) {
        return tell(deleteEnvironmentValue(name), "Remove ", "FAILED to remove ", name, ui);
    }
    return tell(erase(name, text), "Erase from ", "FAILED to erase from ", name, ui);
}

bool EnvironmentChanges::restore(const std::string& name, const std::string& value) {
    std::string present;
    return readEnvironmentValue(name, present) != EnvironmentRead::kUnreadable &&
           writeEnvironmentValue(name, value);
}

bool EnvironmentChanges::erase(const std::string& name, const std::string& text) {
    std::string present;
    if (readEnvironmentValue(name, present) != EnvironmentRead::kFound) {
        return false;
    }
    const std::size_t position = text.empty() ? std::string::npos : present.find(text);
    // What isn't there any more leaves nothing to write.
    return position == std::string::npos || writeEnvironmentValue(name, present.erase(position, text.size()));
}

bool EnvironmentChanges::broadcastEnvironmentChange() {
    if (!shell_.broadcastEnvironment()) {
        Report(nullptr, &errors_).addError("FAILED to make the changed environment known");
    }
    return true;
}

bool EnvironmentChanges::tell(bool done, const char* doneWord, const char* failedWord,
                              const std::string& name, InstallerUI* ui) {
    const std::string line = (done ? doneWord : failedWord) + name;
    Report report(ui, &errors_);
    report.addLine(line, false);
    if (!done) {
        report.addError(line);
    }
    return done;
}
