#pragma once

#include <functional>
#include <optional>
#include <string>

#include "engine/action_log_writer.h"
#include "engine/engine_parts.h"
#include "support/p_file_console.h"

class PStream;
class Report;
class UndoWalk;
class WrittenSums;
struct ChangeJob;
struct LogHead;
enum class RestoreResult;

// Takes an installation back, as its action log says: the archive's files return, every record is undone, and
// registry keys and directories go last, the last one first. No failure stops the walk; what couldn't be
// undone is reported and collected.
//
// A walk that failed can be repeated: action log, archive, description, uninstaller and the entry in the list
// of installed applications stay until everything else is undone.
class Uninstallation {
public:
    // Whether the walk was asked to end. Called often, on the thread of the walk.
    using StopRequest = std::function<bool()>;

    // What becomes of the files that a repetition needs when a walk fails.
    enum class Repetition {
        kPossible,  // they stay
        kNone,      // they go with everything else, but for the archive: other files belong in their places
    };

    explicit Uninstallation(const EngineParts& parts);

    // Finds out where the backup archive is (from `backupPath`, or from the log without that) and runs the
    // actions of PreUninstall: each once for this object. `log` is the open action log; null without one,
    // which is logged when the archive's path is wanted from it, and which leaves that for a later call.
    void prepare(PStream* log, const std::optional<std::string>& backupPath, Report& report);

    // prepare, and then the walk, which plans and follows the progress of the whole job. False when anything
    // failed, the missing log included, or when `isToEnd` asked for the end, which comes at the next record;
    // the variable of the role UninstallError is "1" then. The log stays where it is, so the walk can be
    // repeated.
    bool run(PStream* log, const std::optional<std::string>& backupPath, Report& report,
             const StopRequest& isToEnd = {}, Repetition repetition = Repetition::kPossible);

    // The product's entry in the list of installed applications is to go: after a clean walk at once,
    // otherwise with the end of a clean walk to come. False when it can't be removed, and after a walk that
    // failed, which leaves it. An entry that isn't there is no failure.
    bool unregister(Report& report);

    // As the log or a caller gave it; empty before `prepare`.
    const std::string& backupPath() const { return backupPath_; }

private:
    enum class State {
        kNotRun,
        kOver,          // successful, or failed after what a repetition needs had gone
        kToBeRepeated,  // failed
    };
    struct Product;
    struct Cleaning;

    void readBackupPath(PStream* log);
    void planProgress(PStream* log, const LogHead& head, Report& report);
    bool walkLog(PStream* log, const LogHead& head, UndoWalk& walk, Report& report);
    void restoreArchive(PStream* log, const Product& product, UndoWalk& walk, ChangeJob& job);
    void findArchive(const Product& product, Report& report);
    bool isArchiveChanged(const WrittenSums& written);
    RestoreResult restoreFiles(PStream* log, const LogHead& head, UndoWalk& walk, Report& report);
    void holdWhatRepetitionNeeds(PStream& log, const Product& product, Repetition repetition, ChangeJob& job);
    void removeByWildcards(Product& product, ChangeJob& job);
    bool clean(const Cleaning& cleaning, ChangeJob& job);
    bool removeProduct(Product& product, UndoWalk& walk, ChangeJob& job);
    bool removeKeptFiles(Product& product, UndoWalk& walk, ChangeJob& job);
    bool removeEntry(Report& report);
    bool restoreEntry(const Product& product);
    void reportEnd(bool failed, bool canBeRepeated, Report& report);
    void setErrorVariable();

    EngineParts parts_;
    // Not open in an uninstallation; an action may continue the product's log.
    PFileConsole logFile_;
    ActionLogWriter log_;
    bool isPrepared_ = false;
    bool actionsHaveRun_ = false;
    std::string backupPath_;
    State state_ = State::kNotRun;
    std::optional<std::string> entry_;  // the name of the one that is to go with the walk
};
