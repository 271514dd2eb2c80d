#include "installer/relaunch.h"

#include <memory>

#include "base/path_functions.h"
#include "installer/run_options.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/processes.h"
#include "platform/program.h"
#include "support/p_console.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"
#include "wini/uninstaller_events.h"

namespace {

constexpr char kLogCopyName[] = "\\ormeluninst.log";
// The copy is a program in spite of its name.
constexpr char kImageCopyName[] = "\\ormeluninst.dll";

}  // namespace

std::string UninstallRelaunch::commandLine(const std::string& image, const std::string& logCopy,
                                           const RunOptions& options, int debugLevel) {
    std::string line = "\"" + image + "\" -uninstallFile=\"" + logCopy + "\" -uninstallApp=\"" +
                       (options.uninstallApp == nullptr ? "" : options.uninstallApp) + "\"";
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

int UninstallRelaunch::fail() {
    platform_.events.signal(kUninstallerEndEvent);
    return -1;
}

// The fixed names lie where others can write: each is taken anew as this user's own before anything goes in.
bool UninstallRelaunch::copyToPrivateFile(const char* from, const char* to) {
    PFileStream file(platform_.files);
    return file.openPrivate(to) == 0 && file.close() == 0 && OUtils::copyFile(from, to, platform_.files);
}

int UninstallRelaunch::run(const RunOptions& options, int debugLevel) {
    log_.print("Uninstalling. Uninstall file: %s", options.uninstallLog);
    std::string ownImage;
    if (!platform::ownImagePath(ownImage)) {
        log_.print("ERROR: Unable to obtain module file name. Exiting!");
        return fail();
    }
    std::string directory;
    if (!platform_.files.temporaryDirectory(directory)) {
        log_.print("ERROR: Unable to obtain temporary path for uninstaller log. Exiting!");
        return fail();
    }
    const std::string logCopy = directory + kLogCopyName;
    if (!copyToPrivateFile(options.uninstallLog, logCopy.c_str())) {
        log_.print("ERROR: Unable to copy uninstaller log to %s. Exiting!", logCopy.c_str());
        return fail();
    }
    const std::string imageCopy = directory + kImageCopyName;
    if (!copyToPrivateFile(ownImage.c_str(), imageCopy.c_str()) ||
        platform_.files.makeExecutable(imageCopy.c_str()) != 0) {
        log_.print("Error copying file %s - Error Number = %d", imageCopy.c_str(),
                   platform::lastSystemError());
        return fail();
    }
    const std::string line = commandLine(imageCopy, logCopy, options, debugLevel);
    log_.print("Calling uninstaller process. Command line: %s", line.c_str());
    int error = 0;
    if (platform_.processes.start(line.c_str(), directory.c_str(), error) == nullptr) {
        log_.print("ERROR: Unable to create uninstall process. Exiting!");
        return fail();
    }
    return 0;
}
