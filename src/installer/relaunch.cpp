#include "installer/relaunch.h"

#include <vector>

#include "engine/recovery.h"
#include "engine/uninstall_command.h"
#include "installer/own_image.h"
#include "installer/private_copy.h"
#include "installer/run_options.h"
#include "installer/start_messages.h"
#include "platform/environment.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "platform/platform.h"
#include "platform/processes.h"
#include "wini/uninstaller_events.h"

UninstallRelaunch::UninstallRelaunch(platform::Platform& platform, StartMessages& messages, DebugLog debugLog)
    : platform_(platform), messages_(messages), debugLog_(std::move(debugLog)) {}

UninstallRelaunch::~UninstallRelaunch() = default;

bool UninstallRelaunch::isNothingThere(platform::Platform& platform, const std::string& registeredLog) {
    return !platform.files.exists(registeredLog) && unfinishedLog(platform, registeredLog).empty();
}

std::string UninstallRelaunch::commandLine(const std::string& image, const std::string& logCopy,
                                           const RunOptions& options, int debugLevel) {
    std::string line = "\"" + image + "\" -uninstallFile=\"" + logCopy +
                       "\" -uninstallApp=" + quotedOption(options.uninstallApp);
    if (options.gui == 0) {
        line += " -gui=0";
    }
    if (options.quiet != 0) {
        line += " -quiet=1";
    }
    if (options.receipt) {
        line += " -receipt=" + quotedOption(*options.receipt) +
                " -receiptLog=" + quotedOption(options.receiptLog);
    }
    if (options.exitCodes) {
        line += " -exitCodes=1";
    }
    if (debugLevel != 0) {
        line += " -debug=" + std::to_string(debugLevel);
    }
    return line;
}

// `log` is the line of the debug log, `text` is what the screen says.
bool UninstallRelaunch::fail(const std::string& log, const std::string& text) {
    debugLog_.line(log);
    messages_.note("ERROR: The uninstallation can't start: " + text);
    platform_.events.signal(kUninstallerEndEvent);
    return false;
}

bool UninstallRelaunch::run(const std::string& registeredLog, const RunOptions& options) {
    debugLog_.line("Uninstalling. Uninstall file: " + registeredLog);
    const std::string logPath = readableLog(registeredLog);
    std::string ownImage;
    if (!platform_.environment.programPath(ownImage)) {
        return fail("ERROR: Unable to obtain module file name. Exiting!",
                    "the program doesn't know its own path");
    }
    std::vector<std::string> places = platform_.files.otherPrivatePlaces();
    std::string temporary;
    if (platform_.files.temporaryDirectory(temporary)) {
        places.insert(places.begin(), temporary);
    }
    if (places.empty()) {
        return fail("ERROR: Unable to obtain temporary path for uninstaller log. Exiting!",
                    "there is no directory for temporary files");
    }
    // The first place is the one that the user knows, so its failure is the one to be named.
    std::optional<Failure> first;
    for (const std::string& place : places) {
        const std::optional<Failure> failure = runFrom(place, ownImage, logPath, options);
        if (!failure) {
            return true;
        }
        debugLog_.line("WARNING: The uninstallation can't run from " + place + ": " + failure->text);
        first = first ? first : failure;
    }
    return fail(first->log, first->text);
}

// A run that was killed may not have come to publish the log; the second stage takes back what it did.
std::string UninstallRelaunch::readableLog(const std::string& registeredLog) {
    if (platform_.files.exists(registeredLog)) {
        return registeredLog;
    }
    const std::string unfinished = unfinishedLog(platform_, registeredLog);
    return unfinished.empty() ? registeredLog : unfinished;
}

// None when the copy runs.
std::optional<UninstallRelaunch::Failure> UninstallRelaunch::runFrom(const std::string& place,
                                                                     const std::string& ownImage,
                                                                     const std::string& logPath,
                                                                     const RunOptions& options) {
    PrivateCopy copy(platform_.files);
    switch (copy.make(place, ownImage, logPath)) {
        case PrivateCopy::Failure::kLog:
            return Failure{"ERROR: Unable to copy uninstaller log to " + copy.log() + ". Exiting!",
                           copy.why()};
        case PrivateCopy::Failure::kImage:
            return Failure{
                "Error copying file " + copy.image() + " - Error Number = " + std::to_string(copy.status()),
                copy.why()};
        case PrivateCopy::Failure::kNone:
            break;
    }
    if (movesImage_ && !OwnImage(platform_.files, ownImage).stepAside(copy.image())) {
        return Failure{"ERROR: Unable to move " + ownImage + " out of the way. Exiting!",
                       "\"" + ownImage + "\" can't be moved out of the way"};
    }
    const std::string line = commandLine(copy.image(), copy.log(), options, debugLog_.level());
    debugLog_.line("Calling uninstaller process. Command line: " + line);
    int error = 0;
    secondStage_ = platform_.processes.start(line, place, error);
    if (secondStage_ == nullptr) {
        return Failure{"ERROR: Unable to create uninstall process. Exiting!",
                       "\"" + copy.image() + "\" can't be run: " + platform::errorText(error)};
    }
    copy.keep();
    return std::nullopt;
}
