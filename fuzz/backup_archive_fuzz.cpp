#include <cstdint>
#include <cstdlib>
#include <string>

#include "fakes/memory_file_system.h"
#include "fakes/recording_ui.h"
#include "package/backup_file.h"
#include "package/backup_format.h"

// A backup archive: the banner is given, the rest is the input. A file that was there may only change as a
// whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFileSystem files;
    files.addFile("/a/user", "user");
    files.addFile("/backup", std::string(BackupFormat::kBanner, BackupFormat::kBannerSize) +
                                 std::string(reinterpret_cast<const char*>(data), size));
    RecordingUI ui;
    {
        BackupFile backup(files);
        if (backup.openForReading("/backup") != 0) {
            std::abort();
        }
        const int result = backup.restoreAll(nullptr, ui);
        if (result != 0 && result != -1) {
            std::abort();
        }
    }
    // What was restored came out of the archive, so it can't be larger.
    for (const std::string& path : files.allFiles()) {
        if (path != "/backup" && files.content(path).size() > size + 4) {
            std::abort();
        }
    }
    return 0;
}
