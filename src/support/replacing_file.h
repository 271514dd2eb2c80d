#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "support/p_file_stream.h"

// Creates a file for writing with `stream` under the first of the names nameOf(0) to nameOf(most - 1) that
// nobody has; what has one stays. `isPrivate`: for this user alone. 0, the system's error number when no name
// is free or the file can't be created, or -1 without a name. The stream has the name that was tried last.
int createUnderFreeName(PFileStream& stream, platform::FileSystem& files,
                        const std::function<std::string(int number)>& nameOf, int most, bool isPrivate);

// Removes the files beside their places that ReplacingFile, or the system's links, left in a directory
// because the program was killed; with `onlyIfAlone` only if nothing else is in it. Somebody may be at work
// there: to be called where it is known that nobody is, or that the directory is to go.
void removeAbandonedFiles(platform::FileSystem& files, std::string_view directory, bool onlyIfAlone);

// A file that takes the place of another one only when it is complete. Until then it lies beside its place
// under a name that nobody had, so that no failure costs the old file, and nobody sees a half one. The old
// file isn't opened for writing: one that has other names as well keeps its content under them, and a link in
// its place is replaced, not followed.
class ReplacingFile {
public:
    // `files` is borrowed.
    explicit ReplacingFile(platform::FileSystem& files) : files_(files), stream_(files) {}
    ~ReplacingFile() { discard(); }
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    // Discards what it holds, then begins a file for `path`. Where a plain file is replaced, the new one gets
    // that one's rights, and a program the marks of one besides; otherwise it gets `rights`. 0, the system's
    // error number, or -1 when a directory, a device or the like is in the place.
    int open(std::string_view path, platform::FileRights rights = platform::FileRights::kPlain);

    // The same, but the new file gets the rights of the plain file at `rightsSource`, whatever it replaces.
    int openWithRightsOf(std::string_view path, std::string_view rightsSource);

    // After a successful open(): something is in the place.
    bool replacesSomething() const { return present_ != platform::PathKind::kNothing; }

    // The content. Its writer looks at each status: what could not be written must not be put in place.
    // Closed by putInPlace. Its name is that of the file beside the place.
    PFileStream& stream() { return stream_; }

    // Gives the rights, closes the file and moves it to its place in one step. 0, or the system's error
    // number: then the old file is as it was. If only the last step failed, isComplete() is true, and the
    // call may be repeated, say when the program that held the old file has ended.
    int putInPlace();
    bool isComplete() const { return isComplete_; }

    // Removes what was not put in place.
    void discard();

private:
    int createBeside();
    int giveRights();

    platform::FileSystem& files_;
    PFileStream stream_;
    std::string path_;
    std::string beside_;        // empty when there is no file
    std::string rightsSource_;  // empty for those of the file that is replaced
    platform::FileRights rights_ = platform::FileRights::kPlain;
    platform::PathKind present_ = platform::PathKind::kNothing;
    bool isComplete_ = false;
};
