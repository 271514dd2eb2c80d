#include "engine/uninstaller.h"

#include <charconv>

#include "base/text_functions.h"
#include "contracts/installer_ui.h"
#include "contracts/system_modifications.h"
#include "contracts/system_operations.h"
#include "description/control_variables.h"
#include "description/variable_store.h"
#include "engine/action_log_format.h"
#include "engine/additional_actions.h"
#include "engine/changes/firewall_change.h"
#include "engine/line_reader.h"
#include "package/backup_file.h"
#include "platform/file_system.h"

namespace {

namespace Format = ActionLogFormat;

constexpr std::int64_t kLinesToAFlush = 32;

// The line that begins the variables: its tag, a separator and a number.
bool readVariableCount(std::string_view line, std::int64_t& outCount) {
    if (!line.starts_with(Format::kVariableCount)) {
        return false;
    }
    const std::string_view digits = withoutTrailingSpace(line.substr(Format::kVariableCount.size()));
    if (digits.size() < 2 || digits.front() != Format::kSeparator) {
        return false;
    }
    const auto [end, error] = std::from_chars(digits.data() + 1, digits.data() + digits.size(), outCount);
    return error == std::errc() && end == digits.data() + digits.size();
}

bool isFlushDue(std::int64_t index) {
    return index % kLinesToAFlush == 0;
}

}  // namespace

// MODIFYFILE isn't among them: its records are undone ahead of all others.
const Uninstaller::RecordKind Uninstaller::kRecordKinds[] = {
    {Format::kDirectory, &Uninstaller::noteDirectory},
    {Format::kFile, &Uninstaller::deleteFile},
    {Format::kEnvironment, &Uninstaller::undoEnvironment},
    {Format::kIni, &Uninstaller::undoIni},
    {Format::kShortcut, &Uninstaller::undoShortcut},
    {Format::kFirewall, &Uninstaller::undoFirewall},
    {Format::kRegistryKey, &Uninstaller::noteRegistryKey},
    {Format::kRegistryValue, &Uninstaller::deleteRegistryValue},
};

Uninstaller::Uninstaller(Parts parts, std::unique_ptr<PFileStream>& log, UninstallState& state)
    : parts_(parts),
      log_(log),
      state_(state),
      debugLog_(parts.context.debugLog),
      fileInUse_(parts.files, parts.system),
      directories_(parts.files),
      wildcards_(parts.files) {}

int Uninstaller::PrepareUninstall(InstallerUI* ui, const char* backupPath) {
    if (!state_.uninstallPrepared) {
        state_.uninstallPrepared = true;
        readBackupFileName(backupPath);
    }
    if (!state_.preUninstallDone) {
        state_.preUninstallDone = true;
        parts_.actions.runAdditionalActions(ui, "PreUninstall");
    }
    return 0;
}

void Uninstaller::readBackupFileName(const char* backupPath) {
    if (backupPath != nullptr) {
        state_.backupFileName.assign(backupPath);
        return;
    }
    if (log_ == nullptr) {
        debugLog_.print(
            "WARNING: PrepareUninstall called without open action log and no specified backup file!");
        return;
    }
    LineReader reader(*log_);
    std::string line;
    if (reader.rewind() && reader.readLine(line, Format::kRecordLineBuffer) &&
        reader.readLine(line, Format::kBackupLineBuffer)) {
        state_.backupFileName.assign(withoutTrailingSpace(line));
    }
}

int Uninstaller::uninstallFromLog(InstallerUI& ui, const char* backupPath) {
    PrepareUninstall(&ui, backupPath);
    Walk walk{ui, Report(&ui, &parts_.context.errors)};
    restoreBackup(walk);
    walk.report.setStatus("Uninstalling");
    if (log_ != nullptr) {
        findRecords(walk);
        undoModifications(walk);
        walk.report.flushLines();
        walk.report.begin();
        undoRecords(walk);
    } else {
        debugLog_.print("ERROR: There is no action log to uninstall from");
        walk.errors = true;
        walk.report.begin();
    }
    walk.report.flushLines();
    removeRegistryKeys(walk);
    removeByWildcards(walk);
    removeDirectories(walk);
    return finish(walk);
}

void Uninstaller::restoreBackup(Walk& walk) {
    BackupFile archive(parts_.files);
    if (state_.backupFileName.isEmpty() || archive.openForReading(state_.backupFileName.c_str()) != 0) {
        return;
    }
    walk.restored = archive.restoreAll(nullptr, walk.ui) == 0;
    archive.close();
}

// A log without a count of variables consists of records from its first line on.
void Uninstaller::findRecords(Walk& walk) {
    LineReader reader(*log_);
    std::string line;
    reader.rewind();
    while (reader.readLine(line, Format::kRecordLineBuffer)) {
        std::int64_t count = 0;
        if (readVariableCount(line, count)) {
            for (; count > 0 && reader.readLine(line, Format::kRecordLineBuffer); --count) {
            }
            walk.start = reader.position();
            return;
        }
    }
}

void Uninstaller::undoModifications(Walk& walk) {
    LineReader reader(*log_);
    reader.moveTo(walk.start);
    std::string line;
    for (; reader.readLine(line, Format::kRecordLineBuffer); ++walk.total) {
        const std::string record(withoutTrailingSpace(line));
        if (record.starts_with(Format::kModifyFile) &&
            !parts_.context.modifications.undoFileModification(std::string(nextLogField(record)).c_str(),
                                                               &walk.ui)) {
            walk.errors = true;
        }
        if (isFlushDue(walk.total)) {
            walk.report.flushLines();
        }
    }
}

void Uninstaller::undoRecords(Walk& walk) {
    LineReader reader(*log_);
    reader.moveTo(walk.start);
    std::string line;
    while (reader.readLine(line, Format::kRecordLineBuffer)) {
        undoRecord(walk, withoutTrailingSpace(line));
        advance(walk);
    }
}

void Uninstaller::undoRecord(Walk& walk, std::string_view line) {
    for (const RecordKind& kind : kRecordKinds) {
        if (line.starts_with(kind.tag)) {
            (this->*kind.undo)(walk, nextLogField(line));
            return;
        }
    }
}

void Uninstaller::advance(Walk& walk) {
    if (walk.total > 0) {
        walk.report.setProgress(static_cast<int>((walk.index * 100 + walk.total - 1) / walk.total));
    }
    ++walk.index;
}

// Directories are taken away at the end, and count as further steps until then.
void Uninstaller::noteDirectory(Walk& walk, std::string_view fields) {
    const std::string levels(firstLogField(fields));
    walk.createdDirectories.push_back(
        {std::string(nextLogField(fields)), OUtils::textToInteger(levels.c_str())});
    ++walk.total;
}

void Uninstaller::deleteFile(Walk& walk, std::string_view fields) {
    const std::string_view kind = firstLogField(fields);
    const std::string path(nextLogField(fields));
    const bool isToGo = kind == Format::kCreate || (kind == Format::kOver && !walk.restored);
    if (!isToGo || path.empty()) {
        return;
    }
    walk.ui.pumpEventsWhileCopying();
    std::string line = "Delete " + path;
    if (parts_.files.removeFile(path.c_str()) != 0) {
        if (!parts_.files.exists(path.c_str())) {
            line = "Missing " + path;
        } else if (!fileInUse_.deleteFileInUse(&walk.ui, path.c_str(), kWaitMilliseconds)) {
            line = "FAILED to delete " + path;
            walk.errors = true;
            walk.report.addError(line);
        }
    }
    walk.report.addLine(line, isFlushDue(walk.index));
}

void Uninstaller::undoEnvironment(Walk& walk, std::string_view fields) {
    parts_.context.modifications.removeEnvironmentEntry(std::string(fields).c_str(), &walk.ui);
    walk.environmentTouched = true;
}

void Uninstaller::undoIni(Walk& walk, std::string_view fields) {
    parts_.context.modifications.removeIniEntry(std::string(fields).c_str(), &walk.ui);
}

void Uninstaller::undoShortcut(Walk& walk, std::string_view fields) {
    parts_.context.modifications.removeShortcut(std::string(fields).c_str(), &walk.ui);
}

void Uninstaller::undoFirewall(Walk& walk, std::string_view fields) {
    if (!undoFirewallEntry(walk, fields)) {
        walk.errors = true;
        debugLog_.print("ERROR: Uninstall: Failed to undo a FirwallAction (%s)!",
                        std::string(fields).c_str());
    }
}

bool Uninstaller::undoFirewallEntry(Walk& walk, std::string_view fields) {
    const std::string_view kind = firstLogField(fields);
    const std::string rest(nextLogField(fields));
    FirewallResult result = FirewallResult::kDone;
    std::string line;
    if (kind == Format::kApplication) {
        result = parts_.context.modifications.firewallRemoveApplication(rest.c_str());
        line = " application from firewall: " + rest;
    } else if (kind == Format::kPort) {
        result = parts_.context.modifications.firewallRemovePort(rest.c_str());
        line = " port from firewall: " + std::string(firstLogField(rest));
    } else {
        return true;
    }
    if (result == FirewallResult::kNotAvailable) {
        line = "Firewall: Service is NOT switched on and no exceptions can be removed!";
    } else {
        line = (result == FirewallResult::kDone ? "Removed" : "FAILED to remove") + line;
    }
    walk.report.addLine(line, false);
    if (result != FirewallResult::kDone) {
        walk.report.addError(line);
    }
    return result != FirewallResult::kFailed;
}

void Uninstaller::noteRegistryKey(Walk& walk, std::string_view fields) {
    std::vector<std::string> parts;
    if (splitRegistryFields(Format::kRegistryKey, fields, parts)) {
        walk.createdKeys.push_back({parts[1], parts[2], OUtils::textToInteger(parts[0].c_str())});
    }
}

void Uninstaller::deleteRegistryValue(Walk&, std::string_view fields) {
    std::vector<std::string> parts;
    if (splitRegistryFields(Format::kRegistryValue, fields, parts)) {
        parts_.context.modifications.deleteRegistryValue(parts[0].c_str(), parts[1].c_str(),
                                                         parts[2].c_str());
    }
}

bool Uninstaller::splitRegistryFields(std::string_view tag, std::string_view fields,
                                      std::vector<std::string>& out) {
    constexpr std::size_t kFields = 3;
    OUtils::splitText(std::string(fields).c_str(), Format::kSeparator, out);
    if (out.size() == kFields) {
        return true;
    }
    debugLog_.print("WARNING: (Dev) Wrong number of tokens in the install.log for %s",
                    std::string(tag).c_str());
    return false;
}

void Uninstaller::removeRegistryKeys(Walk& walk) {
    for (auto key = walk.createdKeys.rbegin(); key != walk.createdKeys.rend(); ++key) {
        parts_.context.modifications.deleteRegistryKeys(key->root.c_str(), key->path.c_str(), key->levels);
    }
}

void Uninstaller::removeByWildcards(Walk& walk) {
    DescriptionTags& tags = parts_.context.tags;
    const std::int32_t group = tags.firstOf("UninstallWildcards");
    if (group < 0) {
        return;
    }
    std::int64_t done = 0;
    for (const std::int32_t node : tags.childrenOf(group)) {
        const char* pattern = tags.textOf(node);
        if (pattern == nullptr || !tags.conditionHolds(node)) {
            continue;
        }
        const std::string directory = tags.expandAttribute(node, "Dest");
        if (wildcards_.deleteByWildcard(directory, pattern, tags.isSet(node, "DeleteDirs")) < 0) {
            debugLog_.print("WARNING: Nothing is cleaned in \"%s\" by \"%s\"", directory.c_str(), pattern);
        }
        walk.report.addLine("Delete: " + directory + "/" + pattern, isFlushDue(done++));
    }
    walk.report.flushLines();
}

void Uninstaller::removeDirectories(Walk& walk) {
    std::int64_t done = 0;
    for (auto entry = walk.createdDirectories.rbegin(); entry != walk.createdDirectories.rend(); ++entry) {
        if (!directories_.remove(entry->path, entry->levels, walk.report)) {
            walk.errors = true;
        }
        advance(walk);
        if (isFlushDue(done++)) {
            walk.report.flushLines();
        }
    }
}

int Uninstaller::finish(Walk& walk) {
    walk.report.setProgress(100);
    walk.report.end();
    if (walk.environmentTouched) {
        walk.report.setStatus("Updating environment");
        parts_.context.modifications.broadcastEnvironmentChange();
    }
    walk.report.setStatus(walk.errors ? "There were errors during the uninstall."
                                      : "The uninstall was successful.");
    const char* name = parts_.controls.nameOf(ControlVariable::kUninstallError);
    if (walk.errors && name[0] != '\0') {
        parts_.variables.setVariable(name, "1");
    }
    return walk.errors ? -1 : 0;
}
