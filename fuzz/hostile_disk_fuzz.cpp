// Uninstalls a product from a disk on which anything may be: the action log after its first line, the archive
// after its banner, and files, directories and links under any names. Whatever the disk holds, nothing is
// changed or deleted but what is in the product's places or what log and archive name; a link is never
// followed to something else.
//
// The input's sections: the log, the archive, and the entries of the disk, each a path and, from the second
// line on, a content, or "-> " and the target of a link, or nothing for a path that ends with a separator.

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "disk_paths.h"
#include "disk_snapshot.h"
#include "fuzz_target.h"
#include "input_sections.h"
#include "memory_session.h"
#include "package/backup_format.h"
#include "platform/memory/memory_platform.h"
#include "session/session_flags.h"

namespace {

constexpr char kDescription[] =
    "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname><MajorVersion>1</MajorVersion>"
    "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion></ProductDesc>"
    "<UninstallDialogs><Bye/><CopyProgress/><End Special='Finish'/></UninstallDialogs><DefValues/>"
    "<UninstallWildcards><WC Dest='[DIR]' DeleteDirs='1'>*.tmp</WC><WC Dest='/app/cache' "
    "DeleteDirs='1'>*</WC>"
    "<WC Dest='/kit'>log</WC></UninstallWildcards></TandrelGroupInstallation>";
// Below a name that no input hits upon.
constexpr char kForeignDirectory[] = "/home/someone/4f1c2a90-7d13";
constexpr char kForeign[] = "/home/someone/4f1c2a90-7d13/letter.tmp";

void addEntry(MemoryFileSystem& files, std::string_view entry) {
    constexpr std::string_view kLinkMark = "-> ";
    const std::string_view path = takeLine(entry);
    if (resolvedPath(path).empty()) {
        return;
    }
    if (entry.empty() && (path.back() == '/' || path.back() == '\\')) {
        files.addDirectory(path);
    } else if (entry.starts_with(kLinkMark)) {
        files.addLink(path, entry.substr(kLinkMark.size()));
    } else {
        files.addFile(path, entry);
    }
}

void prepare(MemoryFileSystem& files, const std::vector<std::string_view>& sections) {
    for (std::size_t i = 2; i < sections.size(); ++i) {
        addEntry(files, sections[i]);
    }
    files.addDirectory("/tmp");
    files.addFile(kForeign, "dear");
    files.addLink("/app/cache/away", kForeignDirectory);
    files.addLink("/app/letter", kForeign);
    files.addFile("/kit/product.xml", kDescription);
    files.addFile("/kit/log", "/kit/product.xml\r\n" + std::string(sections[0]));
    if (sections.size() > 1) {
        files.addFile("/kit/backup.bin", std::string(BackupFormat::kBanner, BackupFormat::kBannerSize) +
                                             std::string(sections[1]));
    }
}

// The paths that an uninstallation may touch.
class AllowedPlaces {
public:
    explicit AllowedPlaces(const std::vector<std::string_view>& sections)
        : directories_{"/app", "/kit", "/tmp", "/var/state"} {
        addLog(sections[0]);
        if (sections.size() > 1) {
            addArchive(sections[1]);
        }
    }

    bool hold(std::string_view path) const {
        for (const std::string& directory : directories_) {
            if (isAtOrBelow(path, directory)) {
                return true;
            }
        }
        return files_.contains(path);
    }

private:
    void addLog(std::string_view log) {
        while (!log.empty()) {
            std::string_view line = takeLine(log);
            line = line.substr(0, line.find_last_not_of(" \t\r\n\v\f") + 1);
            const bool isVariable = line.starts_with("VAR");
            files_.insert(resolvedPath(line));
            while (!line.empty()) {
                const std::string_view field = line.substr(0, line.find('\t'));
                line.remove_prefix(std::min(field.size() + 1, line.size()));
                files_.insert(resolvedPath(field));
                if (isVariable) {
                    directories_.insert(resolvedPath(field));
                }
            }
        }
    }

    // Any text that ends with a zero byte may be the name of an entry, from any of its bytes on.
    void addArchive(std::string_view archive) {
        for (std::size_t end = archive.find('\0'); end != std::string_view::npos;
             end = archive.find('\0', end + 1)) {
            for (std::size_t start = end; start > 0 && archive[start - 1] != '\0'; --start) {
                files_.insert(resolvedPath(archive.substr(start - 1, end - start + 1)));
            }
        }
    }

    std::set<std::string, std::less<>> files_;
    std::set<std::string> directories_;
};

// The first content of an archive whose first entry is a good one.
std::string firstContentOf(MemoryFileSystem& files, std::string_view archive) {
    const std::string_view name = archive.substr(0, archive.find('\0'));
    return files.content(name);
}

}  // namespace

// Accepted when nothing failed, the first file of the archive has another content than before, and the cache
// has been cleaned.
bool accepts(std::string_view input) {
    const std::vector<std::string_view> sections = sectionsOf(input);
    MemoryPlatform machine;
    prepare(machine.files, sections);
    const DiskSnapshot before(machine.files);
    const std::string_view archive = sections.size() > 1 ? sections[1] : std::string_view();
    const std::string replaced = firstContentOf(machine.files, archive);
    const SessionEnd end = runSession(machine, "/kit/log", kSessionActionLog);
    const AllowedPlaces allowed(sections);
    for (const std::string& path : before.differencesTo(DiskSnapshot(machine.files))) {
        require(allowed.hold(path));
    }
    require(machine.files.content(kForeign) == "dear");
    return end.hasSucceeded && firstContentOf(machine.files, archive) != replaced &&
           !machine.files.hasDirectory("/app/cache");
}
