#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz_target.h"
#include "package/backup_file.h"
#include "package/backup_format.h"
#include "platform/memory/memory_file_system.h"
#include "support/debug_log.h"

namespace {

class SilentObserver : public BackupRestoreObserver {
public:
    void beforeFile() override {}
    void fileDone(std::string_view, RestoreOutcome outcome, std::int64_t, int) override {
        hasRestored = hasRestored || outcome == RestoreOutcome::kRestored;
    }
    void progress(int) override {}

    bool hasRestored = false;
};

}  // namespace

// A backup archive: the banner is given, the rest is the input. A file that was there may only change as a
// whole.
bool accepts(std::string_view input) {
    MemoryFileSystem files;
    files.addFile("/a/user", "user");
    files.addFile("/backup",
                  std::string(BackupFormat::kBanner, BackupFormat::kBannerSize) + std::string(input));
    SilentObserver observer;
    bool isWhole = false;
    {
        BackupFile backup(files);
        require(backup.openForReading("/backup"));
        isWhole = backup.restoreAll(DebugLog(), observer);
    }
    // What was restored came out of the archive, so it can't be larger.
    for (const std::string& path : files.allFiles()) {
        require(path == "/backup" || files.content(path).size() <= input.size() + 4);
    }
    return isWhole && observer.hasRestored;
}
