#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "support/debug_log.h"

class PStream;

// Reads the part of an action log before its records of changes.
class ActionLogReader {
public:
    // Called for each variable in the log's order; the texts live for the call only.
    using VariableSink = std::function<void(const std::string& name, const std::string& value)>;

    // `file` is an open log, or null; it outlives this object.
    ActionLogReader(PStream* file, DebugLog debugLog) : file_(file), debugLog_(debugLog) {}

    // Line 1, the path of the description, with white space at its end cut. None when there is no file or
    // nothing can be read; an empty line is read as an empty path.
    std::optional<std::string> readDescriptionPath();
    // The second line: the path of the backup archive, which may be empty. Otherwise the same.
    std::optional<std::string> readArchivePath();

    // Rewinds the log and gives each variable to `sink`. Lines of another form are logged and skipped; false
    // when there was one. Throws InstallerError without a file, when it can't be rewound, without a
    // count of variables, with a count that is no number, and when the log ends too early.
    bool readVariables(const VariableSink& sink);

    // The value of the last variable of this name, in any ASCII case; none when there is none or the log
    // can't be read. Logs and throws nothing.
    std::optional<std::string> findVariable(std::string_view name);

private:
    PStream* file_;
    DebugLog debugLog_;
};
