#include "support/replacing_file.h"

#include <algorithm>
#include <vector>

namespace {

using platform::FileRights;
using platform::PathKind;

// Names stay taken by programs that run at the same time and by those that were killed.
constexpr int kMostNames = 1000;
constexpr std::string_view kNameStart = ".tandrel-";
constexpr std::string_view kNameEnd = ".tmp";

// On the same volume as the file, so that it can take its place in one step.
std::string nameBeside(const std::string& path, int number) {
    std::size_t directory = path.find_last_of("/\\") + 1;
    if (directory == 0 && path.size() > 1 && path[1] == ':') {
        directory = 2;
    }
    return path.substr(0, directory).append(kNameStart).append(std::to_string(number)).append(kNameEnd);
}

bool isNameBeside(const platform::DirectoryEntry& entry) {
    return !entry.isDirectory && entry.name.starts_with(kNameStart) && entry.name.ends_with(kNameEnd);
}

}  // namespace

int createUnderFreeName(PFileStream& stream, platform::FileSystem& files,
                        const std::function<std::string(int number)>& nameOf, int most, bool isPrivate) {
    int status = -1;
    for (int number = 0; status != 0 && number < most; ++number) {
        status = stream.createNew(nameOf(number), isPrivate);
        if (status != 0 && !files.exists(stream.getName())) {
            break;
        }
    }
    return status;
}

void removeAbandonedFiles(platform::FileSystem& files, std::string_view directory, bool onlyIfAlone) {
    std::vector<platform::DirectoryEntry> entries;
    if (files.list(directory, entries) != 0 || (onlyIfAlone && !std::ranges::all_of(entries, isNameBeside))) {
        return;
    }
    for (const platform::DirectoryEntry& entry : entries) {
        const std::string path = std::string(directory) + '/' + entry.name;
        const PathKind kind = isNameBeside(entry) ? files.kindOf(path) : PathKind::kNothing;
        if (kind == PathKind::kFile || kind == PathKind::kLink) {
            files.removeFile(path);
        }
    }
}

int ReplacingFile::open(std::string_view path, FileRights rights) {
    discard();
    path_ = path;
    rights_ = rights;
    rightsSource_.clear();
    present_ = files_.kindOf(path_);
    if (path_.empty() || present_ == PathKind::kDirectory || present_ == PathKind::kOther) {
        return -1;
    }
    return createBeside();
}

int ReplacingFile::openWithRightsOf(std::string_view path, std::string_view rightsSource) {
    const int status = open(path, FileRights::kPrivate);
    rightsSource_ = rightsSource;
    return status;
}

// Private until it has the rights of the file that it replaces: those may be fewer than a new file has.
int ReplacingFile::createBeside() {
    const bool isPrivate = present_ == PathKind::kFile || rights_ == FileRights::kPrivate;
    const int status = createUnderFreeName(
        stream_, files_, [this](int number) { return nameBeside(path_, number + 1); }, kMostNames, isPrivate);
    beside_ = status == 0 ? stream_.getName() : "";
    return status;
}

int ReplacingFile::giveRights() {
    if (!rightsSource_.empty()) {
        return stream_.takeRightsOf(rightsSource_);
    }
    if (present_ != PathKind::kFile) {
        return stream_.setRights(rights_);
    }
    const int status = stream_.takeRightsOf(path_);
    return status == 0 && rights_ == FileRights::kProgram ? stream_.makeExecutable() : status;
}

int ReplacingFile::putInPlace() {
    if (beside_.empty()) {
        return -1;
    }
    if (!isComplete_) {
        const int status = giveRights();
        const int closed = stream_.close();
        if (status != 0 || closed != 0) {
            return status != 0 ? status : closed;
        }
        isComplete_ = true;
    }
    // What appeared in a free place in the meantime is somebody else's.
    const int status =
        present_ == PathKind::kNothing ? files_.moveFile(beside_, path_) : files_.replaceFile(beside_, path_);
    if (status == 0) {
        beside_.clear();
        isComplete_ = false;
    }
    return status;
}

void ReplacingFile::discard() {
    stream_.close();
    if (!beside_.empty()) {
        files_.removeFile(beside_);
    }
    beside_.clear();
    isComplete_ = false;
}
