#include "engine/removal_journal.h"

#include <algorithm>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/removal_journal_format.h"
#include "engine/run_records.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "support/utilities.h"

namespace {

namespace Format = RemovalJournalFormat;
using platform::pathIdentity;
using platform::PathKind;

std::string parentOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return path.substr(0, separator == std::string::npos ? 0 : separator);
}

std::string journalIn(std::string_view directory) {
    return std::string(directory).append("/").append(Format::kFileName);
}

}  // namespace

RemovalJournal::RemovalJournal(platform::FileSystem& files, platform::Environment& environment)
    : files_(files), environment_(environment), file_(files) {}

int RemovalJournal::open() {
    if (isOpen() || !environment_.stateDirectory(stateDirectory_)) {
        return -1;
    }
    int status = makeStateDirectory();
    if (status == 0) {
        status = files_.createPrivateDirectory(stateDirectory_, Format::kDirectoryPrefix, directory_);
    }
    status = status != 0 ? status : file_.createPrivate(journalIn(directory_));
    status = status != 0 ? status : write(Format::kBanner, Durability::kWritten);
    status = status != 0 ? status : note(Format::kLevelsNote, std::to_string(madeLevels_.size()));
    if (status != 0) {
        discard();
    }
    return status;
}

int RemovalJournal::makeStateDirectory() {
    std::vector<std::string> missing;  // deepest first
    std::string level(OUtils::stripTrailingSeparators(stateDirectory_));
    for (; !level.empty() && !files_.exists(level); level = parentOf(level)) {
        missing.push_back(level);
    }
    for (; !missing.empty(); missing.pop_back()) {
        if (const int status = files_.createDirectory(missing.back()); status != 0) {
            return status;
        }
        madeLevels_.insert(madeLevels_.begin(), missing.back());
    }
    return 0;
}

int RemovalJournal::resume(std::string_view directory) {
    if (isOpen() || !environment_.stateDirectory(stateDirectory_)) {
        return -1;
    }
    directory_ = directory;
    const ReadRecords found = read();
    if (found.end == 0) {
        directory_.clear();
        return -1;
    }
    int status = file_.openFile(journalIn(directory_), PFileStream::kReadWrite, PFileStream::kShareRead,
                                PFileStream::kOpenExisting | PFileStream::kRefuseLinks);
    // What follows a torn record would be taken for its end.
    status = status != 0 ? status : file_.seek(static_cast<std::int64_t>(found.end));
    status = status != 0 ? status : file_.setEndOfStream();
    if (status != 0) {
        file_.close();
        directory_.clear();
        return status;
    }
    for (const RemovalRecord& record : found.records) {
        adopt(record);
    }
    return 0;
}

bool RemovalJournal::look(std::string_view directory) {
    directory_ = directory;
    const ReadRecords found = read();
    for (const RemovalRecord& record : found.records) {
        adopt(record);
    }
    return found.end != 0;
}

void RemovalJournal::adopt(const RemovalRecord& record) {
    lastRecord_ = std::max(lastRecord_, record.number);
    lastKept_ = std::max(lastKept_, record.kept);
    if (record.step == RemovalStep::kNote) {
        notes_[record.path] = record.other;
        adoptLevels();
    } else if (record.step == RemovalStep::kArchived) {
        archived_[pathIdentity(record.path)] = record.kept;
    }
}

// As many levels of the state directory as another run made for this journal.
void RemovalJournal::adoptLevels() {
    const int levels = OUtils::textToInteger(noteOf(Format::kLevelsNote).value_or(""));
    madeLevels_.clear();
    std::string level(OUtils::stripTrailingSeparators(stateDirectory_));
    for (int i = 0; i < levels && !level.empty(); ++i, level = parentOf(level)) {
        madeLevels_.push_back(level);
    }
}

std::vector<std::string> RemovalJournal::directoriesOnDisk() {
    std::vector<std::string> found;
    std::string parent;
    std::vector<platform::DirectoryEntry> entries;
    if (!environment_.stateDirectory(parent) || files_.list(parent, entries) != 0) {
        return found;
    }
    for (const platform::DirectoryEntry& entry : entries) {
        std::string directory = parent + "/" + entry.name;
        if (entry.isDirectory && entry.name.starts_with(Format::kDirectoryPrefix) &&
            files_.kindOf(journalIn(directory)) == PathKind::kFile) {
            found.push_back(std::move(directory));
        }
    }
    std::ranges::sort(found);
    return found;
}

// Empty, or with a journal that doesn't even have its whole banner.
bool RemovalJournal::isUnfinished(const std::string& directory) {
    std::vector<platform::DirectoryEntry> entries;
    if (files_.list(directory, entries) != 0 || entries.size() > 1) {
        return false;
    }
    const std::string file = journalIn(directory);
    std::string content;
    return entries.empty() ||
           (entries[0].name == Format::kFileName && files_.kindOf(file) == PathKind::kFile &&
            OUtils::readWholeFile(file, content, files_, OUtils::Links::kRefuse) == 0 &&
            content.size() < Format::kBanner.size() && Format::kBanner.starts_with(content));
}

void RemovalJournal::removeUnfinishedDirectories() {
    std::string parent;
    std::vector<platform::DirectoryEntry> entries;
    if (!environment_.stateDirectory(parent) || files_.list(parent, entries) != 0) {
        return;
    }
    for (const platform::DirectoryEntry& entry : entries) {
        const std::string directory = parent + "/" + entry.name;
        if (entry.isDirectory && entry.name.starts_with(Format::kDirectoryPrefix) &&
            isUnfinished(directory)) {
            files_.removeFile(journalIn(directory));
            files_.removeDirectory(directory);
        }
    }
}

int RemovalJournal::note(std::string_view name, std::string_view text) {
    return note(Notes{{std::string(name), std::string(text)}});
}

int RemovalJournal::note(const Notes& notes) {
    std::vector<RemovalRecord> records;
    for (const auto& [name, text] : notes) {
        RemovalRecord record;
        record.step = RemovalStep::kNote;
        record.path = name;
        record.other = text;
        records.push_back(std::move(record));
    }
    const int status = append(records, Durability::kFlushed);
    for (const RemovalRecord& record : records) {
        if (status == 0) {
            notes_[record.path] = record.other;
        }
    }
    return status;
}

std::optional<std::string> RemovalJournal::noteOf(std::string_view name) const {
    const auto found = notes_.find(name);
    return found == notes_.end() ? std::nullopt : std::optional(found->second);
}

int RemovalJournal::noteArchived(const std::vector<std::string>& paths) {
    std::unordered_map<std::string, std::uint32_t> keptRights;
    std::vector<RemovalRecord> records;
    for (const std::string& path : paths) {
        RemovalRecord record;
        record.step = RemovalStep::kArchived;
        record.path = path;
        if (keepRightsOnce(path, keptRights, record.kept)) {
            records.push_back(std::move(record));
        }
    }
    const int status = append(records, Durability::kFlushed);
    for (const RemovalRecord& record : records) {
        if (status == 0) {
            adopt(record);
            newlyArchived_.push_back(record.path);
        }
    }
    return status;
}

// Most files of a product have the same rights. One empty file for all of them saves thousands that would
// have to be created and removed.
bool RemovalJournal::keepRightsOnce(const std::string& path,
                                    std::unordered_map<std::string, std::uint32_t>& keptRights,
                                    std::uint32_t& outKept) {
    const std::string rights = files_.rightsOf(path);
    if (const auto found = keptRights.find(rights); found != keptRights.end()) {
        outKept = found->second;
        return true;
    }
    outKept = nextKept();
    PFileStream placeholder(files_);
    const bool isKept = !rights.empty() && placeholder.createNew(keptPath(outKept), true) == 0 &&
                        placeholder.takeRightsOf(path) == 0;
    if (isKept) {
        keptRights.emplace(rights, outKept);
    }
    return isKept;
}

bool RemovalJournal::isArchived(std::string_view path) const {
    return !archived_.empty() && archived_.contains(pathIdentity(path));
}

std::string RemovalJournal::rightsOf(std::string_view path) const {
    const auto found = archived_.find(pathIdentity(path));
    const std::string kept = found == archived_.end() ? "" : keptPath(found->second);
    return files_.kindOf(kept) == PathKind::kFile ? kept : std::string();
}

std::string RemovalJournal::keptPath(std::uint32_t number) const {
    return directory_ + "/" + std::to_string(number);
}

int RemovalJournal::append(RemovalRecord& record, Durability durability) {
    std::vector<RemovalRecord> records = {std::move(record)};
    const int status = append(records, durability);
    record = std::move(records.front());
    return status;
}

int RemovalJournal::append(std::vector<RemovalRecord>& records, Durability durability) {
    std::string frames;
    for (RemovalRecord& record : records) {
        record.number = ++lastRecord_;
        const std::optional<std::string> frame = frameOf(record);
        if (!frame) {
            return -1;
        }
        frames += *frame;
    }
    return frames.empty() ? 0 : write(frames, durability);
}

// A record that was written in part is cut off, or what follows it would be taken for its end. Where it can't
// be, nothing may follow it.
int RemovalJournal::write(std::string_view frames, Durability durability) {
    constexpr std::size_t kPiece = 1 << 20;
    if (const int status = cutTornRecord(); status != 0) {
        failure_ = status;
        return status;
    }
    const std::int64_t start = file_.getPosition();
    int status = start < 0 ? -1 : 0;
    for (std::size_t at = 0; status == 0 && at < frames.size(); at += kPiece) {
        const std::string_view piece = frames.substr(at, kPiece);
        std::uint32_t done = 0;
        status = file_.write(piece.data(), static_cast<std::uint32_t>(piece.size()), done);
    }
    if (status == 0 && durability == Durability::kFlushed) {
        status = file_.flush();
    }
    if (status != 0) {
        tornRecord_ = start;
        cutTornRecord();
    }
    failure_ = status != 0 ? status : failure_;
    return status;
}

int RemovalJournal::cutTornRecord() {
    if (tornRecord_ < 0) {
        return 0;
    }
    int status = file_.seek(tornRecord_);
    status = status != 0 ? status : file_.setEndOfStream();
    tornRecord_ = status == 0 ? -1 : tornRecord_;
    return status;
}

void RemovalJournal::settle(std::uint32_t record) {
    RemovalRecord settled;
    settled.step = RemovalStep::kSettled;
    settled.subject = record;
    append(settled, Durability::kWritten);
}

ReadRecords RemovalJournal::read() {
    std::string content;
    const int status = OUtils::readWholeFile(journalIn(directory_), content, files_, OUtils::Links::kRefuse);
    ReadRecords read;
    if (status == 0) {
        read = readRecords(content);
    }
    read.status = status;
    return read;
}

bool RemovalJournal::holdsDirectory(std::string_view path) const {
    const std::string identity = pathIdentity(path);
    for (std::string level = stateDirectory_; isOpen() && !level.empty(); level = parentOf(level)) {
        if (pathIdentity(level) == identity) {
            return true;
        }
    }
    return false;
}

int RemovalJournal::takeLevels(std::int32_t levels) {
    if (levels <= this->levels()) {
        return 0;
    }
    const int status = note(Format::kLevelsNote, std::to_string(levels));
    adoptLevels();
    return status;
}

void RemovalJournal::releaseDirectory(std::string_view path) {
    madeLevels_.emplace_back(path);
    std::ranges::sort(madeLevels_, std::ranges::greater(), &std::string::size);  // deepest first
}

int RemovalJournal::discard() {
    file_.close();
    const bool isGone = removeContent() && (directory_.empty() || files_.removeDirectory(directory_) == 0);
    if (!isGone) {
        return -1;
    }
    directory_.clear();
    notes_.clear();
    archived_.clear();
    newlyArchived_.clear();
    lastRecord_ = lastKept_ = 0;
    tornRecord_ = -1;
    removeStateDirectory();
    return 0;
}

// The journal goes last: without it nobody could say what the kept files are. What a walk can't remove stays
// with its directory. A kept directory is empty.
bool RemovalJournal::removeContent() {
    std::unique_ptr<platform::Directory> opened;
    std::vector<platform::DirectoryEntry> entries;
    if (directory_.empty() || !files_.exists(directory_)) {
        return true;
    }
    if (files_.openDirectory(directory_, opened) != 0 || opened->list(entries) != 0) {
        return false;
    }
    bool isEmpty = true;
    for (const platform::DirectoryEntry& entry : entries) {
        if (entry.name != Format::kFileName) {
            const int status =
                entry.isDirectory ? opened->removeDirectory(entry.name) : opened->removeFile(entry.name);
            isEmpty = isEmpty && status == 0;
        }
    }
    return isEmpty && (!files_.exists(journalIn(directory_)) || opened->removeFile(Format::kFileName) == 0);
}

// Others may have put something there meanwhile: the system removes only what is empty.
void RemovalJournal::removeStateDirectory() {
    if (!madeLevels_.empty()) {
        RunRecords::removeIfAlone(files_, madeLevels_.front());
    }
    for (const std::string& level : madeLevels_) {
        if (files_.removeDirectory(level) != 0) {
            break;
        }
    }
    madeLevels_.clear();
}
