#pragma once

#include <string>

#include "engine/action_log_writer.h"

class PFileStream;
namespace platform {
class FileSystem;
}

// Brings the variables of a published action log up to date: they may have changed since the files were
// copied. The new log is written beside the old one, for this user alone since values may be secrets, and
// takes its name when it is complete.
class ActionLogRewriter {
public:
    explicit ActionLogRewriter(platform::FileSystem& files) : files_(files) {}

    // Everything but the variable block is copied as it is. A line right after the block that holds the
    // letters VAR anywhere counts as a part of the block and is lost; ActionLogWriter leaves none. Throws
    // InstallerError when the log can't be opened, has no block or ends with it, or when the new log can't be
    // written; the old log is untouched then.
    void rewriteActionLog(const std::string& logPath, const std::vector<LoggedVariable>& variables);

    // Removes the new log that a killed run has left beside this one. Anything else of its name stays.
    void removeAbandoned(const std::string& logPath);

private:
    void takeRights(const std::string& logPath, PFileStream& to);
    void copyLog(const std::string& content, PFileStream& to, const std::vector<LoggedVariable>& variables);

    platform::FileSystem& files_;
};
