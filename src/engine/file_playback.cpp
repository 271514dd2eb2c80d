#include "engine/file_playback.h"

#include "engine/removal_journal.h"
#include "engine/report.h"
#include "platform/error_text.h"
#include "support/file_copy.h"

using platform::PathKind;

namespace {

constexpr std::string_view kChanged = "stays as it is, because it has changed since the removal";
constexpr std::string_view kTaken = "can't be brought back, because something else is in its place";
constexpr std::string_view kGone = "can't be brought back, because what was kept of it is gone";

}  // namespace

bool FilePlayback::takeBack(const RemovalRecord& record) {
    const bool isBack = dispatch(record);
    hasGoneOn_ = hasGoneOn_ || isBack;
    return isBack;
}

bool FilePlayback::dispatch(const RemovalRecord& record) {
    switch (record.step) {
        case RemovalStep::kRemoveFile:
            return takeBackRemoval(record);
        case RemovalStep::kRemoveDirectory:
            return takeBackDirectory(record);
        case RemovalStep::kCreateDirectory:
            return takeBackNewDirectory(record);
        case RemovalStep::kChangeRights:
            return takeBackRights(record);
        default:
            return takeBackContent(record);
    }
}

// What is still there was never removed, unless a copy of it was made and something else came since.
bool FilePlayback::takeBackRemoval(const RemovalRecord& record) {
    const bool isThere = files_.kindOf(record.path) != PathKind::kNothing;
    if (!isKept(record)) {
        return isThere || record.has(RemovalRecord::kWasListed) || left(record.path, kGone);
    }
    if (isThere) {
        return holdsKept(record) || left(record.path, kTaken);
    }
    return done(record.path, putBack(record));
}

bool FilePlayback::takeBackDirectory(const RemovalRecord& record) {
    switch (files_.kindOf(record.path)) {
        case PathKind::kDirectory:
            return true;
        case PathKind::kNothing: {
            const int status = files_.takeDirectoryAway(journal_.keptPath(record.kept), record.path);
            return status == 0 || done(record.path, files_.createDirectory(record.path));
        }
        default:
            return left(record.path, kTaken);
    }
}

bool FilePlayback::takeBackNewDirectory(const RemovalRecord& record) {
    switch (files_.kindOf(record.path)) {
        case PathKind::kNothing:
            return true;
        case PathKind::kDirectory:
            return done(record.path, files_.removeDirectory(record.path));
        default:
            return left(record.path, kChanged);
    }
}

// A file was made, written, replaced or moved.
bool FilePlayback::takeBackContent(const RemovalRecord& record) {
    int status = 0;
    const PlaceContent present = contentOfPlace(files_, record.path, &status);
    if (status != 0) {
        return done(record.path, status);
    }
    if (present.kind == PathKind::kNothing) {
        return takeBackMissing(record);
    }
    // Without an end the removal was stopped while it wrote.
    const bool wasStopped = record.left.kind == PathKind::kNothing && present.kind == PathKind::kFile;
    const bool isLeft = present == record.left && present.kind != PathKind::kOther;
    // By a playback that was killed before it could say so.
    const bool isMovedBack = !isLeft && record.kept != 0 && !isKept(record);
    if (isLeft || (wasStopped && !isMovedBack && !holdsKept(record))) {
        return takeBackLeft(record);
    }
    // The change was never made, or an earlier record or the archive knows what this is.
    const bool isKnownElsewhere =
        record.has(RemovalRecord::kIsArchived) || record.has(RemovalRecord::kPlaceIsOurs);
    return isMovedBack || isKnownElsewhere || holdsKept(record) || left(record.path, kChanged);
}

// The rest was taken back before, or the change was never made.
bool FilePlayback::takeBackMissing(const RemovalRecord& record) {
    if (isKept(record)) {
        return done(record.path, putBack(record));
    }
    const bool isSourceLost = !record.other.empty() && !record.has(RemovalRecord::kSourceIsOurs) &&
                              files_.kindOf(record.other) == PathKind::kNothing;
    return !isSourceLost || left(record.other, kGone);
}

bool FilePlayback::takeBackLeft(const RemovalRecord& record) {
    const bool isMoved = !record.other.empty() && !record.has(RemovalRecord::kSourceIsOurs);
    if (isMoved) {
        const int status = moveBack(record.path, record.other);
        return done(record.other, status) && (!isKept(record) || done(record.path, putBack(record)));
    }
    if (isKept(record)) {
        return done(record.path, putBack(record));
    }
    if (record.kept == 0) {
        return done(record.path, files_.removeFile(record.path));
    }
    // The removal may have left what it found. The first one may have been moved back by a playback that was
    // killed then.
    return !hasGoneOn_ || left(record.path, kGone);
}

// Only for the content that had these rights; rights can't be compared.
bool FilePlayback::takeBackRights(const RemovalRecord& record) {
    int status = 0;
    const PlaceContent present = contentOfPlace(files_, record.path, &status);
    if (status != 0) {
        return done(record.path, status);
    }
    if (present != record.left) {
        return left(record.path, kChanged);
    }
    if (!isKept(record)) {
        return left(record.path, kGone);
    }
    return done(record.path,
                copyWithRights(files_, record.path, journal_.keptPath(record.kept), record.path));
}

bool FilePlayback::isKept(const RemovalRecord& record) const {
    return record.kept != 0 && files_.kindOf(journal_.keptPath(record.kept)) != PathKind::kNothing;
}

bool FilePlayback::holdsKept(const RemovalRecord& record) const {
    return isKept(record) &&
           contentOfPlace(files_, record.path) == contentOfPlace(files_, journal_.keptPath(record.kept));
}

int FilePlayback::moveBack(const std::string& from, const std::string& to) {
    return files_.kindOf(from) == PathKind::kDirectory ? files_.takeDirectoryAway(from, to)
                                                       : files_.moveFile(from, to);
}

// Moved where that is possible, because that gives all of the file back. What was copied from another volume
// is copied again; the kept one stays until the journal goes.
int FilePlayback::putBack(const RemovalRecord& record) {
    const std::string kept = journal_.keptPath(record.kept);
    const bool isFree = files_.kindOf(record.path) == PathKind::kNothing;
    const int status = isFree ? files_.moveFile(kept, record.path) : files_.replaceFile(kept, record.path);
    return status == 0 || files_.kindOf(kept) != PathKind::kFile
               ? status
               : copyWithRights(files_, kept, kept, record.path);
}

bool FilePlayback::done(std::string_view path, int status) {
    return status == 0 || left(path, "can't be brought back: " + platform::errorText(status));
}

bool FilePlayback::left(std::string_view path, std::string_view reason) {
    report_.addReason(path, reason);
    return false;
}
