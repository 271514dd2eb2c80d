#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/report.h"

class InstallerUI;
class TextFile;

namespace platform {
class FileSystem;
}

enum class IniMode : std::int32_t { kNone = 0, kDeleteKey = 1, kWriteValue = 2, kDeleteSection = 3 };

// Changes keys of INI files and takes the changes back. Files are kept byte for byte but for the lines that
// change and the line ends, which become the system's; a file to which nothing happens isn't written. Nothing
// is thrown but std::bad_alloc.
class IniFiles {
public:
    // What can be read of a section to know its present values: the names of its keys, each with a
    // terminator, and one more at the end; a value with its terminator. In bytes.
    static constexpr std::size_t kKeyListSize = 2048;
    static constexpr std::size_t kValueSize = 512;

    // Both are borrowed and outlive this object.
    IniFiles(platform::FileSystem& files, ErrorList& errors) : files_(files), errors_(errors) {}

    bool writeIniValue(const char* file, const char* section, const char* key, const char* value,
                       IniMode mode, const char* beforeKey);

    // Without a key the section is deleted, without a value the key. A new key stands behind the last one of
    // its section, or in front of `beforeKey` where that is found. A missing file is made for a new key.
    // False when an argument is missing, or the file can't be read or written and is as it was.
    bool writeIniLine(const char* file, const char* section, const char* key, const char* value,
                      const char* beforeKey);

    // As the contract tells. A key whose value, or with `isPath` whose section, goes beyond the limits makes
    // it fail, as does what couldn't be undone from the record. `outUndo` is empty then.
    bool addIniEntry(const char* file, const char* section, const char* key, const char* value,
                     std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey);
    // False also for a text of another kind, which is left alone. Where the file has gone nothing is left to
    // do, and no file is made.
    bool removeIniEntry(const char* undoText, InstallerUI* ui);

private:
    struct Entry;
    enum class Outcome { kDone, kFailed, kPresent };

    Outcome change(const Entry& entry, std::string& outUndo, bool& outIsNew);
    bool tell(bool done, const char* doneWord, const char* failedWord, const Entry& entry, InstallerUI* ui);

    platform::FileSystem& files_;
    ErrorList& errors_;
};
