#include "engine/journaled_files.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/path_functions.h"
#include "engine/emptied_directories.h"
#include "platform/environment.h"
#include "platform/path_identity.h"
#include "support/file_copy.h"
#include "support/p_file_stream.h"

using platform::File;
using platform::pathIdentity;
using platform::PathKind;
using Durability = RemovalJournal::Durability;

namespace {

bool isAbsolute(std::string_view path) {
    const std::size_t root = path.size() > 1 && path[1] == ':' ? 2 : 0;
    return path.size() > root && OUtils::isSeparator(path[root]);
}

bool isExclusive(platform::Disposition disposition) {
    return disposition == platform::Disposition::kCreateNew ||
           disposition == platform::Disposition::kCreatePrivate;
}

bool changesContent(const platform::OpenOptions& options) {
    return (options.access & platform::kWrite) != 0 ||
           options.disposition != platform::Disposition::kOpenExisting;
}

bool takesAnyContent(PathKind kind) {
    return kind == PathKind::kNothing || kind == PathKind::kFile;
}

// What a file gets is hashed on its way, as long as it is written from front to back.
class WrittenContent {
public:
    explicit WrittenContent(bool startsEmpty) : isKnown_(startsEmpty) {}

    void wrote(const void* data, std::uint32_t size) {
        if (position_ == size_ && isKnown_) {
            md5_.update(data, size);
            size_ += size;
        } else {
            isKnown_ = isKnown_ && size == 0;
        }
        position_ += size;
    }
    void movedTo(std::int64_t position) { position_ = position; }
    void movedBy(std::uint32_t distance) { position_ += distance; }
    void truncated() { isKnown_ = isKnown_ && position_ == size_; }

    // None when only the file itself knows.
    std::optional<PlaceContent> finish() {
        return isKnown_ ? std::optional(PlaceContent{PathKind::kFile, size_, md5_.finish()}) : std::nullopt;
    }

private:
    Md5 md5_;
    std::int64_t size_ = 0;
    std::int64_t position_ = 0;
    bool isKnown_;
};

}  // namespace

// How the removal reaches what it takes away.
class JournaledFileSystem::Entry {
public:
    virtual ~Entry() = default;
    virtual int remove() = 0;
    virtual int removeDirectory() = 0;
    virtual int takeAway(const std::string& to) = 0;
    virtual int takeDirectoryAway(const std::string& to) = 0;
    virtual int openToRead(std::unique_ptr<File>& outFile) = 0;
};

class JournaledFileSystem::PathEntry : public Entry {
public:
    PathEntry(platform::FileSystem& files, std::string_view path) : files_(files), path_(path) {}

    int remove() override { return files_.removeFile(path_); }
    int removeDirectory() override { return files_.removeDirectory(path_); }
    int takeAway(const std::string& to) override { return files_.takeFileAway(path_, to); }
    int takeDirectoryAway(const std::string& to) override { return files_.takeDirectoryAway(path_, to); }
    int openToRead(std::unique_ptr<File>& outFile) override {
        platform::OpenOptions options;
        options.share = platform::kShareRead | platform::kShareWrite | platform::kShareDelete;
        options.sequential = true;
        options.followLinks = false;
        return files_.open(path_, options, outFile);
    }

private:
    platform::FileSystem& files_;
    std::string path_;
};

// An entry of an open directory. It isn't looked for by its path: something else may have taken that.
class JournaledFileSystem::OpenedEntry : public Entry {
public:
    OpenedEntry(platform::Directory& directory, std::string_view name) : directory_(directory), name_(name) {}

    int remove() override { return directory_.removeFile(name_); }
    int removeDirectory() override { return directory_.removeDirectory(name_); }
    int takeAway(const std::string& to) override { return directory_.takeFileAway(name_, to); }
    int takeDirectoryAway(const std::string& to) override { return directory_.takeDirectoryAway(name_, to); }
    int openToRead(std::unique_ptr<File>& outFile) override { return directory_.openFile(name_, outFile); }

private:
    platform::Directory& directory_;
    std::string name_;
};

// Says when it is closed what it left in its place. `record` is 0 for a file that is only read.
class JournaledFileSystem::OpenFile : public File {
public:
    OpenFile(JournaledFileSystem& owner, std::unique_ptr<File> file, std::string path, std::uint32_t record,
             bool startsEmpty)
        : owner_(owner),
          file_(std::move(file)),
          path_(std::move(path)),
          record_(record),
          content_(startsEmpty) {}
    ~OpenFile() override { OpenFile::close(); }

    int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override {
        const int status = file_->read(buffer, size, outDone);
        content_.movedBy(outDone);
        return status;
    }
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) override {
        const int status = file_->write(buffer, size, outDone);
        content_.wrote(buffer, outDone);
        return status;
    }
    int seek(std::int64_t distance, platform::Origin origin, std::int64_t& outPosition) override {
        const int status = file_->seek(distance, origin, outPosition);
        if (status == 0) {
            content_.movedTo(outPosition);
        }
        return status;
    }
    std::int64_t size() override { return file_->size(); }
    int truncateHere() override {
        content_.truncated();
        return file_->truncateHere();
    }
    int flush() override { return file_->flush(); }
    int setRights(platform::FileRights rights) override {
        return change([&] { return file_->setRights(rights); });
    }
    int takeRightsOf(std::string_view path) override {
        return change([&] { return file_->takeRightsOf(path); });
    }
    int makeExecutable() override {
        return change([&] { return file_->makeExecutable(); });
    }
    int close() override {
        if (isClosed_) {
            return file_->close();
        }
        isClosed_ = true;
        const int status = file_->close();
        if (record_ != 0) {
            const std::optional<PlaceContent> content = content_.finish();
            owner_.closed(path_, record_, content ? *content : contentOfPlace(owner_.files_, path_));
        }
        return status;
    }

private:
    template <typename Change>
    int change(Change change) {
        return record_ != 0 ? change() : owner_.changeRights(path_, change);
    }

    JournaledFileSystem& owner_;
    std::unique_ptr<File> file_;
    std::string path_;
    std::uint32_t record_;
    WrittenContent content_;
    bool isClosed_ = false;
};

class JournaledFileSystem::OpenDirectory : public platform::Directory {
public:
    OpenDirectory(JournaledFileSystem& owner, std::unique_ptr<platform::Directory> directory,
                  std::string path)
        : owner_(owner), directory_(std::move(directory)), path_(std::move(path)) {}

    int list(std::vector<platform::DirectoryEntry>& outEntries) override {
        const int status = directory_->list(outEntries);
        listed_ = status == 0 ? outEntries : std::vector<platform::DirectoryEntry>();
        return status;
    }
    int listDisk(std::vector<platform::DiskEntry>& outEntries) override {
        return directory_->listDisk(outEntries);
    }
    int openDirectory(std::string_view name, std::unique_ptr<platform::Directory>& outDirectory) override {
        const int status = directory_->openDirectory(name, outDirectory);
        if (status == 0) {
            outDirectory = std::make_unique<OpenDirectory>(owner_, std::move(outDirectory), pathOf(name));
        }
        return status;
    }
    int removeFile(std::string_view name) override {
        if (const int status = announceListed(); status != 0) {
            return status;
        }
        OpenedEntry entry(*directory_, name);
        const auto found = announced_.find(std::string(name));
        const bool isAnnounced = found != announced_.end();
        const Announced announced = isAnnounced ? found->second : Announced();
        if (isAnnounced) {
            announced_.erase(found);
        }
        return owner_.removeEntry(pathOf(name), entry, isAnnounced ? &announced : nullptr);
    }
    int removeDirectory(std::string_view name) override {
        OpenedEntry entry(*directory_, name);
        return owner_.removeDirectoryEntry(pathOf(name), entry);
    }
    int openFile(std::string_view name, std::unique_ptr<File>& outFile) override {
        return directory_->openFile(name, outFile);
    }
    // What takes something away keeps it itself; nobody has to keep it here.
    int takeFileAway(std::string_view name, std::string_view to) override {
        return owner_.moveFile(pathOf(name), to);
    }
    int takeDirectoryAway(std::string_view name, std::string_view to) override {
        return owner_.takeDirectoryAway(pathOf(name), to);
    }

private:
    std::string pathOf(std::string_view name) const { return path_ + "/" + std::string(name); }
    int announceListed();

    JournaledFileSystem& owner_;
    std::unique_ptr<platform::Directory> directory_;
    std::string path_;
    std::vector<platform::DirectoryEntry> listed_;  // and not announced
    std::unordered_map<std::string, Announced> announced_;
};

// Who removes one file of a list removes others of it, so the records of all are written at once: a flush for
// each would take most of the time. The record of a file that stays does no harm.
int JournaledFileSystem::OpenDirectory::announceListed() {
    std::vector<RemovalRecord> records;
    std::vector<std::string> names;
    for (const platform::DirectoryEntry& entry : std::exchange(listed_, {})) {
        const std::string path = pathOf(entry.name);
        if (entry.isDirectory || owner_.isOurs(path) || owner_.journal_.isArchived(path)) {
            continue;
        }
        RemovalRecord record;
        record.step = RemovalStep::kRemoveFile;
        record.flags = RemovalRecord::kWasListed;
        record.path = path;
        record.kept = owner_.journal_.nextKept();
        records.push_back(std::move(record));
        names.push_back(entry.name);
    }
    const int status = owner_.journal_.append(records, Durability::kFlushed);
    for (std::size_t i = 0; status == 0 && i < records.size(); ++i) {
        announced_[names[i]] = {records[i].number, records[i].kept};
    }
    return status;
}

std::string JournaledFileSystem::absolute(std::string_view path) {
    std::string directory;
    if (isAbsolute(path) || !environment_.currentDirectory(directory)) {
        return std::string(path);
    }
    return directory + "/" + std::string(path);
}

bool JournaledFileSystem::isOurs(std::string_view path) const {
    return !own_.empty() && own_.contains(pathIdentity(path));
}

std::uint32_t JournaledFileSystem::ourRecord(std::string_view path) const {
    const auto found = own_.find(pathIdentity(path));
    return found == own_.end() ? 0 : found->second.record;
}

void JournaledFileSystem::nowHolds(std::string_view path, std::uint32_t record, const PlaceContent& content) {
    own_[pathIdentity(path)] = {record, content};
}

void JournaledFileSystem::forget(std::string_view path) {
    own_.erase(pathIdentity(path));
}

PlaceContent JournaledFileSystem::contentOf(std::string_view path) {
    const auto found = own_.find(pathIdentity(path));
    const bool isKnown = found != own_.end() && found->second.content.kind == PathKind::kFile;
    return isKnown ? found->second.content : contentOfPlace(files_, path);
}

void JournaledFileSystem::closed(const std::string& path, std::uint32_t record, const PlaceContent& content) {
    // It may have been moved or removed while it was open.
    if (ourRecord(path) != record) {
        return;
    }
    RemovalRecord left;
    left.step = RemovalStep::kLeft;
    left.subject = record;
    left.left = content;
    journal_.append(left, Durability::kWritten);
    nowHolds(path, record, content);
}

int JournaledFileSystem::open(std::string_view path, const platform::OpenOptions& options,
                              std::unique_ptr<File>& outFile) {
    outFile.reset();
    std::string place = absolute(path);
    if (options.followLinks && !isExclusive(options.disposition) && files_.kindOf(place) == PathKind::kLink &&
        changesContent(options)) {
        const std::string link = place;
        if (const int status = files_.resolveFile(link, place); status != 0) {
            return status;  // a link that leads nowhere could make a file that nobody foresees
        }
    }
    std::uint32_t record = 0;
    const bool isNew = files_.kindOf(place) == PathKind::kNothing;
    const std::uint32_t earlier = ourRecord(place);
    if (changesContent(options)) {
        if (const int status = prepareOpening(place, options, record); status != 0) {
            return status;
        }
    }
    std::unique_ptr<File> file;
    const int status = files_.open(path, options, file);
    if (status != 0) {
        if (record != 0 && record != earlier) {
            journal_.settle(record);
        }
        return status;
    }
    if (record != 0) {
        nowHolds(place, record, {});
    }
    const bool startsEmpty = isNew || options.disposition == platform::Disposition::kCreateAlways;
    outFile = std::make_unique<OpenFile>(*this, std::move(file), std::move(place), record, startsEmpty);
    return 0;
}

// `outRecord` stays 0 where the system will refuse, or where there is nothing to keep: a device.
int JournaledFileSystem::prepareOpening(const std::string& place, const platform::OpenOptions& options,
                                        std::uint32_t& outRecord) {
    const PathKind present = files_.kindOf(place);
    const bool canOpen = present == PathKind::kNothing
                             ? options.disposition != platform::Disposition::kOpenExisting
                             : present == PathKind::kFile && !isExclusive(options.disposition);
    return canOpen ? recordWriting(place, present, outRecord) : 0;
}

int JournaledFileSystem::recordWriting(const std::string& path, PathKind present, std::uint32_t& outRecord) {
    if (present == PathKind::kFile && isOurs(path)) {
        outRecord = ourRecord(path);
        return 0;
    }
    RemovalRecord record;
    record.path = path;
    record.step = present == PathKind::kNothing ? RemovalStep::kCreateFile : RemovalStep::kWriteFile;
    int status = present == PathKind::kNothing ? 0 : keepPresent(record);
    record.flags |= journal_.isArchived(path) ? RemovalRecord::kIsArchived : 0;
    // Nothing is lost with a file that wasn't there.
    status = status != 0 ? status
                         : journal_.append(record, present == PathKind::kNothing ? Durability::kWritten
                                                                                 : Durability::kFlushed);
    outRecord = status == 0 ? record.number : 0;
    return status;
}

// Copies the file that is in the place of the record, unless the content is to be had elsewhere.
int JournaledFileSystem::keepPresent(RemovalRecord& record) {
    if (isOurs(record.path)) {
        record.flags |= RemovalRecord::kPlaceIsOurs;
        return 0;
    }
    if (journal_.isArchived(record.path)) {
        return 0;
    }
    record.kept = journal_.nextKept();
    PathEntry entry(files_, record.path);
    return copyToKept(record.path, entry, record.kept);
}

int JournaledFileSystem::copyToKept(const std::string& path, Entry& entry, std::uint32_t kept) {
    std::unique_ptr<File> from;
    PFileStream to(files_);
    int status = entry.openToRead(from);
    status = status != 0 ? status : to.createNew(journal_.keptPath(kept), true);
    if (status != 0) {
        return status;
    }
    status = copyContent(*from, to);
    status = status != 0 ? status : to.takeRightsOf(path);
    status = status != 0 ? status : to.flush();
    const int closed = to.close();
    status = status != 0 ? status : closed;
    if (status != 0) {
        files_.removeFile(journal_.keptPath(kept));
    }
    return status;
}

int JournaledFileSystem::removeFile(std::string_view path) {
    PathEntry entry(files_, path);
    return removeEntry(absolute(path), entry);
}

int JournaledFileSystem::removeEntry(const std::string& path, Entry& entry, const Announced* announced) {
    const PathKind kind = files_.kindOf(path);
    const bool hasCopy = isOurs(path) || (kind == PathKind::kFile && journal_.isArchived(path));
    if (kind == PathKind::kNothing || kind == PathKind::kDirectory || hasCopy) {
        const int status = entry.remove();
        if (status == 0) {
            forget(path);
        }
        return status;
    }
    Announced own = announced != nullptr ? *announced : Announced();
    const int status = announced != nullptr ? 0 : announceRemoval(path, own);
    return status != 0 ? status : keepEntry(path, entry, own);
}

int JournaledFileSystem::announceRemoval(const std::string& path, Announced& outAnnounced) {
    RemovalRecord record;
    record.step = RemovalStep::kRemoveFile;
    record.path = path;
    record.kept = journal_.nextKept();
    const int status = journal_.append(record, Durability::kFlushed);
    outAnnounced = {record.number, record.kept};
    return status;
}

// A copy is for another volume. A link can't be copied, so it stays there.
int JournaledFileSystem::keepEntry(const std::string& path, Entry& entry, const Announced& announced) {
    int status = entry.takeAway(journal_.keptPath(announced.kept));
    if (status == 0) {
        return 0;
    }
    if (files_.kindOf(path) == PathKind::kFile) {
        const int copied = copyToKept(path, entry, announced.kept);
        status = copied != 0 ? status : entry.remove();
        if (copied == 0 && status != 0) {
            files_.removeFile(journal_.keptPath(announced.kept));
        }
    }
    if (status != 0) {
        journal_.settle(announced.record);
    }
    return status;
}

int JournaledFileSystem::moveFile(std::string_view from, std::string_view to) {
    return relocate(from, to, &platform::FileSystem::moveFile, false);
}

int JournaledFileSystem::replaceFile(std::string_view from, std::string_view to) {
    return relocate(from, to, &platform::FileSystem::replaceFile, true);
}

int JournaledFileSystem::takeDirectoryAway(std::string_view path, std::string_view to) {
    return relocate(path, to, &platform::FileSystem::takeDirectoryAway, false);
}

int JournaledFileSystem::relocate(std::string_view from, std::string_view to, Relocate call, bool replaces) {
    const std::string source = absolute(from);
    const std::string target = absolute(to);
    const PathKind present = files_.kindOf(target);
    const bool isRefused = present == PathKind::kDirectory || (present != PathKind::kNothing && !replaces);
    if (isRefused || files_.kindOf(source) == PathKind::kNothing ||
        pathIdentity(source) == pathIdentity(target)) {
        return (files_.*call)(from, to);
    }
    if (takesAnyContent(present)) {
        return relocateOver(source, target, present, call);
    }
    int status = displace(target);
    status = status != 0 ? status : relocateOver(source, target, PathKind::kNothing, call);
    if (status != 0) {
        putBackDisplaced();
    }
    return status;
}

// `present` is what is in the place of `to`: nothing, or a file.
int JournaledFileSystem::relocateOver(const std::string& from, const std::string& to, PathKind present,
                                      Relocate call) {
    RemovalRecord record;
    record.step = present == PathKind::kNothing ? RemovalStep::kMoveFile : RemovalStep::kReplaceFile;
    record.path = to;
    record.other = from;
    record.left = contentOf(from);
    const bool isSourceOurs = isOurs(from);
    record.flags |= isSourceOurs ? RemovalRecord::kSourceIsOurs : 0;
    record.flags |= journal_.isArchived(to) ? RemovalRecord::kIsArchived : 0;
    int status = present == PathKind::kNothing ? 0 : keepPresent(record);
    status = status != 0 ? status : journal_.append(record, Durability::kFlushed);
    if (status != 0) {
        return status;
    }
    status = (files_.*call)(from, to);
    if (status != 0) {
        journal_.settle(record.number);
        return status;
    }
    forget(from);
    if (isSourceOurs) {
        nowHolds(to, record.number, record.left);
    } else {
        forget(to);
    }
    return 0;
}

// A link, or what is no file, makes room for a file.
int JournaledFileSystem::displace(const std::string& path) {
    displacedPath_ = path;
    PathEntry entry(files_, path);
    int status = announceRemoval(path, displaced_);
    status = status != 0 ? status : keepEntry(path, entry, displaced_);
    if (status != 0) {
        displacedPath_.clear();
    }
    return status;
}

void JournaledFileSystem::putBackDisplaced() {
    if (!displacedPath_.empty() && files_.moveFile(journal_.keptPath(displaced_.kept), displacedPath_) == 0) {
        journal_.settle(displaced_.record);
    }
    displacedPath_.clear();
}

int JournaledFileSystem::prepareWriting(std::string_view path, std::uint32_t& outRecord) {
    const std::string place = absolute(path);
    const PathKind present = files_.kindOf(place);
    outRecord = 0;
    displacedPath_.clear();
    if (present == PathKind::kDirectory) {
        return 0;  // the system will refuse
    }
    if (takesAnyContent(present)) {
        return recordWriting(place, present, outRecord);
    }
    const int status = displace(place);
    return status != 0 ? status : recordWriting(place, PathKind::kNothing, outRecord);
}

void JournaledFileSystem::finishWriting(std::string_view path, std::uint32_t record, int status) {
    const std::string place = absolute(path);
    if (record == 0) {
        return;
    }
    if (status == 0 || files_.kindOf(place) != PathKind::kNothing) {
        nowHolds(place, record, {});
        closed(place, record, contentOfPlace(files_, place));
    } else {
        journal_.settle(record);
        putBackDisplaced();
    }
    displacedPath_.clear();
}

int JournaledFileSystem::createDirectory(std::string_view path) {
    RemovalRecord record;
    record.step = RemovalStep::kCreateDirectory;
    record.path = absolute(path);
    // Nothing is lost with it.
    if (const int status = journal_.append(record, Durability::kWritten); status != 0) {
        return status;
    }
    const int status = files_.createDirectory(path);
    if (status == 0) {
        nowHolds(record.path, record.number, {});
    } else {
        journal_.settle(record.number);
    }
    return status;
}

// Its name is known only when it is there.
int JournaledFileSystem::createPrivateDirectory(std::string_view parent, std::string_view prefix,
                                                std::string& outPath) {
    const int status = files_.createPrivateDirectory(parent, prefix, outPath);
    if (status != 0) {
        return status;
    }
    RemovalRecord record;
    record.step = RemovalStep::kCreateDirectory;
    record.path = absolute(outPath);
    const int recorded = journal_.append(record, Durability::kWritten);
    if (recorded != 0) {
        files_.removeDirectory(outPath);
        outPath.clear();
        return recorded;
    }
    nowHolds(record.path, record.number, {});
    return 0;
}

int JournaledFileSystem::removeDirectory(std::string_view path) {
    const std::string place = absolute(path);
    if (goesWithJournal(place)) {
        journal_.releaseDirectory(place);
        return 0;
    }
    PathEntry entry(files_, path);
    return removeDirectoryEntry(place, entry);
}

// The state directory, which nothing but the journal keeps.
bool JournaledFileSystem::goesWithJournal(const std::string& path) {
    std::vector<platform::DirectoryEntry> entries;
    return journal_.holdsDirectory(path) && files_.list(path, entries) == 0 && entries.size() == 1;
}

// A directory that is kept has its rights and its owner when it comes back.
int JournaledFileSystem::removeDirectoryEntry(const std::string& path, Entry& entry) {
    std::vector<platform::DirectoryEntry> entries;
    const bool staysAnyway =
        files_.kindOf(path) != PathKind::kDirectory || (files_.list(path, entries) == 0 && !entries.empty());
    if (staysAnyway || isOurs(path)) {
        const int status = entry.removeDirectory();
        if (status == 0) {
            forget(path);
        }
        return status;
    }
    Announced announced;
    int status = announceDirectory(path, announced);
    if (status != 0) {
        return status;
    }
    status = entry.takeDirectoryAway(journal_.keptPath(announced.kept));
    status = status != 0 ? entry.removeDirectory() : 0;  // it may lie on another volume
    if (status != 0) {
        journal_.settle(announced.record);
    }
    return status;
}

// Who removes one directory of a product removes the others, so the records of all that its files have left
// empty are written at once: a flush for each would take most of the time. The record of one that stays does
// no harm.
int JournaledFileSystem::announceDirectory(const std::string& path, Announced& outAnnounced) {
    const std::string identity = pathIdentity(path);
    if (!announcedDirectories_.contains(identity)) {
        std::vector<std::string> paths = emptiedDirectories(files_, journal_.takeArchived());
        std::erase_if(paths, [&](const std::string& one) { return isOurs(one); });
        if (std::ranges::find(paths, identity, pathIdentity) == paths.end()) {
            paths.push_back(path);
        }
        if (const int status = announceDirectories(paths); status != 0) {
            return status;
        }
    }
    outAnnounced = announcedDirectories_.extract(identity).mapped();
    return 0;
}

int JournaledFileSystem::announceDirectories(const std::vector<std::string>& paths) {
    std::vector<RemovalRecord> records;
    for (const std::string& path : paths) {
        RemovalRecord record;
        record.step = RemovalStep::kRemoveDirectory;
        record.path = path;
        record.kept = journal_.nextKept();
        records.push_back(std::move(record));
    }
    const int status = journal_.append(records, Durability::kFlushed);
    for (const RemovalRecord& record : records) {
        if (status == 0) {
            announcedDirectories_[pathIdentity(record.path)] = {record.number, record.kept};
        }
    }
    return status;
}

int JournaledFileSystem::openDirectory(std::string_view path,
                                       std::unique_ptr<platform::Directory>& outDirectory) {
    const int status = files_.openDirectory(path, outDirectory);
    if (status == 0) {
        outDirectory = std::make_unique<OpenDirectory>(*this, std::move(outDirectory), absolute(path));
    }
    return status;
}

int JournaledFileSystem::makeExecutable(std::string_view path) {
    return changeRights(absolute(path), [&] { return files_.makeExecutable(path); });
}

int JournaledFileSystem::takeDirectoryRights(std::string_view path) {
    return changeRights(absolute(path), [&] { return files_.takeDirectoryRights(path); });
}

template <typename Change>
int JournaledFileSystem::changeRights(const std::string& path, Change change) {
    std::uint32_t record = 0;
    const bool hasCopy = isOurs(path) || journal_.isArchived(path);
    int status = hasCopy || files_.kindOf(path) != PathKind::kFile ? 0 : keepRights(path, record);
    if (status != 0) {
        return status;
    }
    status = change();
    if (status != 0 && record != 0) {
        journal_.settle(record);
    }
    return status;
}

int JournaledFileSystem::keepRights(const std::string& path, std::uint32_t& outRecord) {
    RemovalRecord record;
    record.step = RemovalStep::kChangeRights;
    record.path = path;
    record.left = contentOfPlace(files_, path);
    record.kept = journal_.nextKept();
    PFileStream placeholder(files_);
    int status = placeholder.createNew(journal_.keptPath(record.kept), true);
    status = status != 0 ? status : placeholder.takeRightsOf(path);
    status = status != 0 ? status : journal_.append(record, Durability::kFlushed);
    outRecord = status == 0 ? record.number : 0;
    return status;
}

// What the next start removes, no revert could bring back.
int JournaledFileSystem::removeAtRestart(std::string_view /*path*/) {
    return -1;
}
