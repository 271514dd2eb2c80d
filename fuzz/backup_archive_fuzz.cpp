#include <cstdint>
#include <cstdlib>
#include <string>

#include "fakes/memory_file_system.h"
#include "package/backup_file.h"
#include "package/backup_format.h"
#include "support/debug_log.h"

namespace {

class SilentObserver : public BackupRestoreObserver {
public:
    void beforeFile() override {}
    void fileDone(std::string_view, RestoreOutcome, std::int64_t, int) override {}
    void progress(int) override {}
};

}  // namespace

// A backup archive: the banner is given, the rest is the input. A file that was there may only change as a
// whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFileSystem files;
    files.addFile("/a/user", "user");
    files.addFile("/backup", std::string(BackupFormat::kBanner, BackupFormat::kBannerSize) +
                                 std::string(reinterpret_cast<const char*>(data), size));
    SilentObserver observer;
    {
        BackupFile backup(files);
        if (!backup.openForReading("/backup")) {
            std::abort();
        }
        backup.restoreAll(DebugLog(), observer);
    }
    // What was restored came out of the archive, so it can't be larger.
    for (const std::string& path : files.allFiles()) {
        if (path != "/backup" && files.content(path).size() > size + 4) {
            std::abort();
        }
    }
    return 0;
}
