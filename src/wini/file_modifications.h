#pragma once

#include <string>

#include "engine/report.h"

class InstallerUI;

namespace platform {
class FileSystem;
}

// Adds lines to text files, as a description of the changes says, and takes them out again. A file to which
// nothing happens isn't written; a failure leaves it as it was. Nothing is thrown but std::bad_alloc.
class FileModifications {
public:
    // Both are borrowed and outlive this object.
    FileModifications(platform::FileSystem& files, ErrorList& errors) : files_(files), errors_(errors) {}

    // Puts lines behind others. True also when the lines to look for aren't there. False when a file can't be
    // read or written, the description is broken, or the record couldn't hold both paths; `outUndo` is only
    // filled when all but the writing was possible.
    bool modifyFile(const char* path, const char* description, std::string& outUndo, InstallerUI* ui);
    // Lines that a user has changed since then stay. False also for a text of another kind.
    bool undoFileModification(const char* undoText, InstallerUI* ui);

private:
    bool change(const std::string& path, const std::string& description, bool isUndo);
    bool tell(bool done, const char* action, const std::string& path, InstallerUI* ui);

    platform::FileSystem& files_;
    ErrorList& errors_;
};
