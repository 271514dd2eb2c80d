#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/created_directories.h"
#include "engine/file_in_use.h"
#include "engine/tag_context.h"
#include "engine/uninstall_state.h"
#include "engine/wildcard_remover.h"
#include "engine/report.h"
#include "support/debug_log.h"

class AdditionalActions;
class ControlVariables;
class InstallerUI;
class PFileStream;
class SystemOperations;
class VariableStore;

// Takes an installation back, as its action log tells it: the archive's files return, every record is undone,
// and directories and registry keys go last, the last one first. Nothing stops the walk; what couldn't be
// undone is told and collected.
class Uninstaller {
public:
    // How long a program gets to end whose file is to be deleted.
    static constexpr std::uint32_t kWaitMilliseconds = 2000;

    struct Parts {
        TagContext context;
        AdditionalActions& actions;
        SystemOperations& system;
        platform::FileSystem& files;
        VariableStore& variables;
        const ControlVariables& controls;
    };

    // `log` is the session's open action log, or null; `state` is the session's.
    Uninstaller(Parts parts, std::unique_ptr<PFileStream>& log, UninstallState& state);

    // Finds out where the backup archive lies (from `backupPath`, or from the log when that is null) and runs
    // the actions of PreUninstall: each once in a session. 0.
    int PrepareUninstall(InstallerUI* ui, const char* backupPath);

    // 0, or -1 when anything failed; then the variable of the role UninstallError is "1".
    int uninstallFromLog(InstallerUI& ui, const char* backupPath);

private:
    struct Directory {
        std::string path;
        int levels;
    };
    struct RegistryKey {
        std::string root;
        std::string path;
        int levels;
    };
    // One walk.
    struct Walk {
        InstallerUI& ui;
        Report report;
        std::int64_t start = 0;  // of the records in the log
        std::int64_t total = 0;  // lines, and directories
        std::int64_t index = 0;
        bool restored = false;
        bool errors = false;
        bool environmentTouched = false;
        std::vector<Directory> createdDirectories{};
        std::vector<RegistryKey> createdKeys{};
    };
    using Undo = void (Uninstaller::*)(Walk& walk, std::string_view fields);
    struct RecordKind {
        std::string_view tag;
        Undo undo;
    };
    static const RecordKind kRecordKinds[];

    void readBackupFileName(const char* backupPath);
    void restoreBackup(Walk& walk);
    void findRecords(Walk& walk);
    void undoModifications(Walk& walk);
    void undoRecords(Walk& walk);
    void undoRecord(Walk& walk, std::string_view line);
    void removeRegistryKeys(Walk& walk);
    void removeByWildcards(Walk& walk);
    void removeDirectories(Walk& walk);
    int finish(Walk& walk);

    void noteDirectory(Walk& walk, std::string_view fields);
    void deleteFile(Walk& walk, std::string_view fields);
    void undoEnvironment(Walk& walk, std::string_view fields);
    void undoIni(Walk& walk, std::string_view fields);
    void undoShortcut(Walk& walk, std::string_view fields);
    void undoFirewall(Walk& walk, std::string_view fields);
    void noteRegistryKey(Walk& walk, std::string_view fields);
    void deleteRegistryValue(Walk& walk, std::string_view fields);

    bool splitRegistryFields(std::string_view tag, std::string_view fields, std::vector<std::string>& out);
    bool undoFirewallEntry(Walk& walk, std::string_view fields);
    static void advance(Walk& walk);

    Parts parts_;
    std::unique_ptr<PFileStream>& log_;
    UninstallState& state_;
    DebugLog debugLog_;
    FileInUse fileInUse_;
    CreatedDirectories directories_;
    WildcardRemover wildcards_;
};
