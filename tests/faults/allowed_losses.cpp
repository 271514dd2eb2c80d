#include "allowed_losses.h"

#include <algorithm>
#include <utility>

#include "embedded_text.h"

namespace {

bool isBelow(const Difference& difference, std::string_view directory) {
    return difference.place.starts_with("file " + std::string(directory));
}

// Otherwise the program ended.
bool isFailure(const std::string& failedCall) {
    return !failedCall.empty() && failedCall != kKilledUninstallation;
}

// Also beside the file whose place it was to take.
bool isTemporary(const Difference& difference, const std::string& failedCall) {
    const std::string& place = difference.place;
    const bool isBeside = isFailure(failedCall) &&
                          (place.find("/.tandrel-") != std::string::npos || place.ends_with("/templog.log"));
    return difference.expected.empty() && (isBeside || isBelow(difference, "/tmp/"));
}

// Not after the end of a program: the next run needs it and takes it away.
bool isKept(const Difference& difference, const std::string& failedCall) {
    return isFailure(failedCall) && difference.expected.empty() && isBelow(difference, "/var/state/removal-");
}

// What the actions of the sample product do, and undo.
bool isOfAction(const Difference& difference, const std::string& /*failedCall*/) {
    constexpr const char* kPlaces[] = {
        "file /opt/tandrel/docs/agreement.md", "file /opt/tandrel/docs/banner.png",
        "file /opt/tandrel/tandrel.conf.default", "file /opt/tandrel/samples/hello-setup",
        "registry HKCU\\Software\\Tandrel Tools"};
    return std::ranges::any_of(kPlaces,
                               [&](const char* place) { return difference.place.starts_with(place); });
}

bool isUnknownSum(const Difference& difference, const std::string& /*failedCall*/) {
    return isBelow(difference, "/var/state/written-") && !difference.expected.empty();
}

bool isProbe(const Difference& difference, const std::string& failedCall) {
    return failedCall.find("test$$$$") != std::string::npos &&
           difference.place.find("test$$$$") != std::string::npos;
}

// They go one after the other when everything else has gone.
bool isLastRecord(const Difference& difference, const std::string& failedCall) {
    constexpr const char* kSteps[] = {"removeFile ", "removeDirectory ", "list ", "openDirectory "};
    return difference.expected.empty() && isBelow(difference, "/opt/tandrel/uninstall") &&
           std::ranges::any_of(kSteps, [&](const char* step) { return failedCall.starts_with(step); }) &&
           failedCall.find("uninstall") != std::string::npos;
}

// The log goes before what a repetition by it would need.
bool isLastFile(const Difference& difference, const std::string& failedCall) {
    constexpr const char* kLast[] = {"file /opt/tandrel/uninstall", "file /opt/tandrel/uninstall/install.xml",
                                     "file /opt/tandrel/uninstall/backup.bin",
                                     "file /opt/tandrel/uninstall/getting-started.change"};
    return failedCall == kKilledUninstallation && difference.expected.empty() &&
           std::ranges::find(kLast, difference.place) != std::end(kLast);
}

bool isEntry(const Difference& difference, const std::string& /*failedCall*/) {
    return !difference.expected.empty() &&
           difference.place.find("\\Uninstall\\Tandrel Installer Tools") != std::string::npos;
}

bool isAbout(const std::string& failedCall, std::string_view file) {
    return failedCall.find(file) != std::string::npos;
}

// The undo couldn't delete this very file, or the directory or link; or close this very port.
bool isLeftByUndo(const Difference& difference, const std::string& failedCall) {
    constexpr std::pair<const char*, const char*> kOfSecond[] = {
        {"file /usr/local/share/applications/Tandrel support.desktop", "Tandrel support.desktop"},
        {"file /opt/tandrel/samples/second.sh", "second.sh"},
        {"firewall 8318 TCP", "8318"}};
    return difference.expected.empty() && std::ranges::any_of(kOfSecond, [&](const auto& left) {
               return difference.place == left.first && isAbout(failedCall, left.second);
           });
}

// The undo couldn't read or write it, or read it in the archive; the revert has said where the archive is
// kept.
bool isReplacedFile(const Difference& difference, const std::string& failedCall) {
    return difference.place == "file /opt/tandrel/README.md" &&
           difference.expected.ends_with("somebody else's") &&
           (isAbout(failedCall, "\\opt\\tandrel\\.tandrel-") || isAbout(failedCall, "\\README.md") ||
            isAbout(failedCall, "uninstall/backup.bin"));
}

}  // namespace

const std::vector<AllowedLoss>& allowedLosses() {
    static const std::vector<AllowedLoss> kLosses = {
        {"temporary file", "A temporary file that can't be deleted stays.", isTemporary},
        {"kept", "What was kept of an earlier version and can't be deleted, or is still needed, stays.",
         isKept},
        {"action", "What an action should have made, or removed, and couldn't.", isOfAction},
        {"sums", "The checksums of installed files, if they can't be read or written.", isUnknownSum},
        {"probe", "The empty file that tries a directory out, if it can't be deleted.", isProbe},
        {"entry",
         "The entry in the list of installed applications, if it can't be made, or an error ends the run "
         "before "
         "its page.",
         isEntry},
        {"left by an undo", "A file, link or open port of the new version that a revert can't take away.",
         isLeftByUndo},
        {"replaced file",
         "A file that the new version had replaced and that a revert can't read or write just then.",
         isReplacedFile},
        {"last records", "The last records of a product that has gone, if one can't be deleted.",
         isLastRecord},
        {"last files",
         "The last files of a product that has gone, if the uninstallation is killed after it has deleted "
         "its "
         "log.",
         isLastFile},
    };
    return kLosses;
}

const AllowedLoss* allowedLoss(const Difference& difference, const std::string& failedCall) {
    for (const AllowedLoss& loss : allowedLosses()) {
        if (loss.covers(difference, failedCall)) {
            return &loss;
        }
    }
    return nullptr;
}

std::vector<std::string> lossesWithoutWords() {
    std::vector<std::string> names;
    for (const AllowedLoss& loss : allowedLosses()) {
        if (embeddedText("failures.md").find(loss.words) == std::string::npos) {
            names.emplace_back(loss.name);
        }
    }
    return names;
}
