#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/action_log_writer.h"
#include "engine/engine_parts.h"
#include "support/p_file_console.h"

class PStream;
class Report;
struct ChangeJob;

// Takes an installation back, as its action log says: the archive's files return, every record is undone, and
// registry keys and directories go last, the last one first. Nothing stops the walk; what couldn't be undone
// is reported and collected.
class Uninstallation {
public:
    explicit Uninstallation(const EngineParts& parts);

    // Finds out where the backup archive is (from `backupPath`, or from the log without that) and runs the
    // actions of PreUninstall: each once for this object. `log` is the open action log; null without one,
    // which is logged when the archive's path is wanted from it.
    void prepare(PStream* log, const std::optional<std::string>& backupPath, Report& report);

    // prepare, and then the walk. False when anything failed, the missing log included; the variable of the
    // role UninstallError is "1" then. The log stays where it is, so the walk can be repeated.
    bool run(PStream* log, const std::optional<std::string>& backupPath, Report& report);

    // As the log or a caller gave it; empty before `prepare`.
    const std::string& backupPath() const { return backupPath_; }

private:
    class Walk;

    void readBackupPath(PStream* log);
    void removeByWildcards(ChangeJob& job);
    void setErrorVariable();

    EngineParts parts_;
    // Not open in an uninstallation; an action may continue the product's log.
    PFileConsole logFile_;
    ActionLogWriter log_;
    bool isPrepared_ = false;
    bool actionsHaveRun_ = false;
    std::string backupPath_;
};
