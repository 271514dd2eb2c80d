#include "installer/relaunch.h"

#include <memory>

#include "base/path_functions.h"
#include "installer/run_options.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/processes.h"
#include "platform/program.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"
#include "wini/uninstaller_events.h"

namespace {

constexpr char kLogCopyName[] = "\\ormeluninst.log";
// The copy is a program, despite its name.
constexpr char kImageCopyName[] = "\\ormeluninst.dll";

}  // namespace

std::string UninstallRelaunch::commandLine(const std::string& image, const std::string& logCopy,
                                           const RunOptions& options, int debugLevel) {
    std::string line =
        "\"" + image + "\" -uninstallFile=\"" + logCopy + "\" -uninstallApp=\"" + options.uninstallApp + "\"";
    if (options.gui == 0) {
        line += " -gui=0";
    }
    if (options.quiet != 0) {
        line += " -quiet=1";
    }
    if (debugLevel != 0) {
        line += " -debug=" + std::to_string(debugLevel);
    }
    return line;
}

bool UninstallRelaunch::isCopy(const std::string& path) {
    return OUtils::lastPathComponent(path) == kImageCopyName + 1;
}

bool UninstallRelaunch::fail() {
    platform_.events.signal(kUninstallerEndEvent);
    return false;
}

// Others can write to the directory that holds these fixed names, so each file is created anew, owned by this
// user, before anything is written to it.
bool UninstallRelaunch::copyToPrivateFile(const std::string& from, const std::string& to) {
    PFileStream file(platform_.files);
    return file.openPrivate(to) == 0 && file.close() == 0 && OUtils::copyFile(from, to, platform_.files);
}

bool UninstallRelaunch::run(const std::string& logPath, const RunOptions& options) {
    debugLog_.line("Uninstalling. Uninstall file: " + logPath);
    std::string ownImage;
    if (!platform_.environment.programPath(ownImage)) {
        debugLog_.line("ERROR: Unable to obtain module file name. Exiting!");
        return fail();
    }
    std::string directory;
    if (!platform_.files.temporaryDirectory(directory)) {
        debugLog_.line("ERROR: Unable to obtain temporary path for uninstaller log. Exiting!");
        return fail();
    }
    const std::string logCopy = directory + kLogCopyName;
    if (!copyToPrivateFile(logPath, logCopy)) {
        debugLog_.line("ERROR: Unable to copy uninstaller log to " + logCopy + ". Exiting!");
        return fail();
    }
    const std::string imageCopy = directory + kImageCopyName;
    if (!copyToPrivateFile(ownImage, imageCopy) || platform_.files.makeExecutable(imageCopy) != 0) {
        debugLog_.line("Error copying file " + imageCopy +
                       " - Error Number = " + std::to_string(platform::lastSystemError()));
        return fail();
    }
    const std::string line = commandLine(imageCopy, logCopy, options, debugLog_.level());
    debugLog_.line("Calling uninstaller process. Command line: " + line);
    int error = 0;
    if (platform_.processes.start(line, directory, error) == nullptr) {
        debugLog_.line("ERROR: Unable to create uninstall process. Exiting!");
        return fail();
    }
    return true;
}
