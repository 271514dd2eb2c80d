// Uninstalls from anything as the records of an action log, on a machine in memory: it must come to its end,
// and what no record names must stay. Clean-up and archive are good ones in each run.

#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "memory_session.h"
#include "package/backup_file.h"
#include "platform/memory/memory_platform.h"
#include "session/session_flags.h"

namespace {

constexpr char kHead[] = "/kit/product.xml\r\n/kit/backup.bin\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\n";
constexpr char kDescription[] =
    "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname><MajorVersion>1</MajorVersion>"
    "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion></ProductDesc>"
    "<UninstallDialogs><Bye/><CopyProgress/><End Special='Finish'/></UninstallDialogs><DefValues/>"
    "<UninstallWildcards><WC Dest='[DIR]/cache' DeleteDirs='1'>*.tmp</WC></UninstallWildcards>"
    "</TandrelGroupInstallation>";
// Names that no input hits upon: somewhere else, and in the directory that is cleaned.
constexpr char kForeign[] = "/home/someone/4f1c2a90-7d13-letter.txt";
constexpr char kForeignInCache[] = "/app/cache/deep/4f1c2a90-7d13-letter.txt";
constexpr char kReplaced[] = "/app/replaced.txt";
constexpr char kCached[] = "/app/cache/old/1.tmp";

// The archive holds the user's file, with the check sum of the one that took its place.
void addArchive(MemoryFileSystem& files) {
    files.addDirectory("/kit");
    files.addFile(kReplaced, "the user's");
    {
        BackupFile archive(files);
        const std::string_view installed = "installed";
        require(archive.openForWriting("/kit/backup.bin"));
        require(!archive.addFile(kReplaced, BackupFile::foldCheckSum(9, installed)));
    }
    files.addFile(kReplaced, "installed");
}

void prepare(MemoryFileSystem& files, std::string_view records) {
    files.addDirectory("/tmp");
    files.addFile(kForeign, "dear");
    files.addFile(kForeignInCache, "dear");
    files.addFile(kCached, "");
    files.addDirectory("/app/made/here");
    files.addFile("/app/text.txt", "alpha\nadded\n");
    files.addFile("/app/change", "1\nalpha\n1\nadded\n");
    files.addFile("/app/set.ini", "[main]\nkey=value\n");
    addArchive(files);
    files.addFile("/kit/product.xml", kDescription);
    files.addFile("/kit/log", kHead + std::string(records));
}

}  // namespace

// Accepted when nothing failed, the user's file came back and the cache has been cleaned.
bool accepts(std::string_view input) {
    MemoryPlatform machine;
    prepare(machine.files, input);
    const SessionEnd end = runSession(machine, "/kit/log", kSessionActionLog);
    require(end.isFinished);
    require(machine.files.content(kForeign) == "dear" && machine.files.content(kForeignInCache) == "dear");
    return end.hasSucceeded && machine.files.content(kReplaced) == "the user's" &&
           !machine.files.hasFile(kCached) && !machine.files.hasDirectory("/app/cache/old");
}
