#include "engine/changes/directory_change.h"

#include <algorithm>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/change_record.h"
#include "engine/changes/record_text.h"
#include "engine/kept_files.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "support/replacing_file.h"

namespace {

constexpr std::string_view kSeparators = "/\\";
constexpr std::size_t kDirectoriesPerFlush = 32;
// As many as a path can have, for the length of a record.
constexpr std::string_view kMostLevels = "9999";
static_assert(DirectoryChange::kPathLimit < 9999);

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::size_t rootLength(std::string_view path) {
    if (OUtils::isSeparator(path[0])) {
        return 1;
    }
    const bool hasDrive = isLetter(path[0]) && path[1] == ':' && OUtils::isSeparator(path[2]);
    return hasDrive ? 3 : 0;
}

bool holdsNothingBut(platform::FileSystem& files, const std::string& directory, std::string_view child) {
    std::vector<platform::DirectoryEntry> entries;
    return files.isOrdinaryDirectory(directory) && files.list(directory, entries) == 0 &&
           std::all_of(entries.begin(), entries.end(), [child](const platform::DirectoryEntry& entry) {
               return entry.isDirectory && !child.empty() && OUtils::equalsIgnoreCase(entry.name, child);
           });
}

}  // namespace

bool DirectoryChange::create(std::string_view path) {
    // What the record can't name would stay for good.
    if (!RecordText::isLastField(path) ||
        !RecordText::fits(ActionLogFormat::kDirectory, RecordText::join({kMostLevels, path}))) {
        return false;
    }
    const std::string_view wanted = path.substr(0, kPathLimit);
    if (wanted.size() < kShortestPath || known_.contains(std::string(wanted))) {
        return true;
    }
    const std::vector<std::string> levels = missingLevels(wanted);
    const bool done = levels.empty() || createRecorded(levels, path);
    if (done && OUtils::isSeparator(wanted.back())) {
        known_.emplace(wanted);
    }
    return done;
}

// The topmost first.
std::vector<std::string> DirectoryChange::missingLevels(std::string_view path) {
    std::vector<std::string> missing;
    for (std::size_t i = rootLength(path); i < path.size(); ++i) {
        const bool isLevelEnd = OUtils::isSeparator(path[i]) && i > 0 && !OUtils::isSeparator(path[i - 1]);
        std::string level(isLevelEnd ? path.substr(0, i) : std::string_view());
        if (isLevelEnd && !isKnown(level)) {
            missing.push_back(std::move(level));
        }
    }
    return missing;
}

// How many were made; fewer than all after a failure, which is reported.
std::size_t DirectoryChange::createLevels(const std::vector<std::string>& levels) {
    std::size_t created = 0;
    for (const std::string& level : levels) {
        const int status = context_.machine.files.createDirectory(level);
        if (status != 0) {
            reportLevel(level, status);
            break;
        }
        known_.insert(level);
        ++created;
    }
    return created;
}

// After a failure the record keeps naming all levels: it counts them from the deepest one, and the undo
// passes over those that were never made.
bool DirectoryChange::createRecorded(const std::vector<std::string>& levels, std::string_view path) {
    ChangeRecord record(&context_.log);
    if (!record.write(ActionLogFormat::kDirectory, {std::to_string(levels.size()), path})) {
        if (failed_.insert(levels.front()).second) {
            context_.report.addReason(levels.front(), kUnrecordedReason);
        }
        return false;
    }
    const std::size_t created = createLevels(levels);
    if (created == 0) {
        record.withdraw();
    }
    return created == levels.size();
}

// No line of its own says that a directory failed, and each of its files meets the same failure.
void DirectoryChange::reportLevel(const std::string& level, int status) {
    if (failed_.insert(level).second) {
        context_.report.addReason(level, status);
    }
}

bool DirectoryChange::isKnown(const std::string& directory) {
    if (known_.contains(directory)) {
        return true;
    }
    if (!context_.machine.files.isDirectory(directory)) {
        return false;
    }
    known_.insert(directory);
    return true;
}

bool DirectoryChange::undo(const LogRecord& record) {
    const std::string levels(firstLogField(record.fields));
    toRemove_.push_back({std::string(nextLogField(record.fields)), OUtils::textToInteger(levels)});
    context_.report.expectSteps(1);
    return true;
}

bool DirectoryChange::finishUndo() {
    bool removed = true;
    std::size_t done = 0;
    for (const std::string& directory : std::exchange(postponed_, {})) {
        removed = removeLevel(directory) && removed;
    }
    for (auto record = toRemove_.rbegin(); record != toRemove_.rend(); ++record) {
        context_.report.pumpEvents();
        removed = remove(*record) && removed;
        context_.report.finishStep();
        if (done++ % kDirectoriesPerFlush == 0) {
            context_.report.flushLines();
        }
    }
    toRemove_.clear();
    return removed;
}

// A path with a separator at its end counts its levels from there; one without is first taken as a whole.
bool DirectoryChange::remove(const Record& record) {
    std::int32_t levels = record.levels;
    if (levels < 1 || record.path.empty()) {
        return true;
    }
    bool removed = OUtils::isSeparator(record.path.back()) || removeLevel(record.path);
    std::string level = record.path;
    for (std::size_t end = level.find_last_of(kSeparators); end != std::string::npos && levels > 0;
         --levels) {
        level.resize(end);
        if (level.empty()) {
            break;
        }
        removed = removeLevel(level) && removed;
        end = level.find_last_of(kSeparators);
    }
    return removed;
}

bool DirectoryChange::removeLevel(const std::string& directory) {
    int status = 0;
    if (kept_ != nullptr && kept_->postponesDirectory(directory, status)) {
        postponed_.push_back(directory);
        return true;
    }
    platform::FileSystem& files = context_.machine.files;
    if (files.exists(directory)) {
        removeAbandonedFiles(files, directory, true);
        removeEmptyDirectories(files, directory);
    }
    bool removed = !files.exists(directory);
    const bool isOurs = removed || files.isOrdinaryDirectory(directory);
    // The system knows best why it stays.
    if (!removed && isOurs && status == 0) {
        status = files.removeDirectory(directory);
        removed = status == 0;
    }
    context_.report.addOutcome(
        removed, (removed ? "Remove " : "FAILED to remove ") + platform::writtenPath(directory));
    if (!isOurs) {
        context_.report.addReason(directory, "it belongs to the system, or is no directory");
    } else {
        context_.report.addReason(directory, removed ? 0 : status);
    }
    return removed;
}

int removeEmptyDirectories(platform::FileSystem& files, std::string_view path) {
    std::string level(path.substr(0, DirectoryChange::kPathLimit));
    std::replace(level.begin(), level.end(), '/', '\\');
    level.resize(level.find_last_not_of('\\') + 1);
    std::vector<std::string> levels;  // deepest first
    std::string child;
    while (!level.empty() && holdsNothingBut(files, level, child)) {
        levels.push_back(level);
        const std::size_t separator = level.rfind('\\');
        if (separator == std::string::npos) {
            break;
        }
        child = level.substr(separator + 1);
        level.resize(level.find_last_not_of('\\', separator) + 1);
    }
    for (const std::string& directory : levels) {
        if (files.removeDirectory(directory) != 0) {
            return 0;
        }
    }
    return static_cast<int>(levels.size());
}
