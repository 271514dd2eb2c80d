#include "engine/earlier_installations_scan.h"

#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "description/expressions.h"
#include "description/product_description.h"
#include "description/pxml.h"
#include "platform/file_system.h"
#include "support/debug_log.h"

namespace {

constexpr char kProductPath[] = "TandrelGroupInstallation/ProductDesc";
constexpr char kUninstallPath[] = "TandrelGroupInstallation/Installation/Uninstall";
constexpr int kNameCapacity = 1024;
constexpr int kPathCapacity = static_cast<int>(PathText::capacity());

// The words of the attribute Details.
struct ExternalDetails {
    bool substring = false;
    std::uint32_t flags = 0;

    explicit ExternalDetails(const char* text) {
        std::vector<std::string> words;
        OUtils::splitText(text, ';', words);
        for (const std::string& word : words) {
            substring = substring || OUtils::equalsIgnoreCase(word.c_str(), "substring");
            flags |= OUtils::equalsIgnoreCase(word.c_str(), "x86") ? kEntryIn32BitView : 0U;
        }
    }
};

}  // namespace

EarlierInstallationsScan::EarlierInstallationsScan(Parts parts, EarlierInstallations& found,
                                                   DebugLog debugLog)
    : parts_(parts), found_(found), debugLog_(debugLog) {}

std::vector<std::int32_t> EarlierInstallationsScan::childrenOf(const char* path, const char* name) const {
    std::vector<std::int32_t> nodes;
    const std::int32_t parent = parts_.description.findPath(path);
    if (parent < 0) {
        return nodes;
    }
    for (std::int32_t node = parts_.description.findChild(parent, name); node >= 0;
         node = parts_.description.findChild(parent, name, node)) {
        nodes.push_back(node);
    }
    return nodes;
}

bool EarlierInstallationsScan::isPresent(const char* path) {
    return path[0] != '\0' && parts_.files.exists(path);
}

void EarlierInstallationsScan::scanForEarlierInstallations(bool isActionLogSession) {
    if (found_.previousUninstallDone != 0) {
        return;
    }
    found_.previousInstallationKind = kNoPreviousInstallation;
    found_.legacyInstallationCount = 0;
    if (isActionLogSession) {
        return;
    }
    char name[kNameCapacity] = "";
    if (parts_.product.getFullName(name, kNameCapacity) == 0 && parts_.system.findUninstallEntry(name, 0)) {
        found_.previousInstallationKind = kRegisteredInstallation;
    }
    for (const std::int32_t node : childrenOf(kProductPath, "LegacyApplication")) {
        const char* legacy = parts_.description.getText(node);
        if (legacy != nullptr && parts_.system.findUninstallEntry(legacy, 0)) {
            ++found_.legacyInstallationCount;
            debugLog_.print("Found installed legacy app: \"%s\"", legacy);
        }
    }
}

void EarlierInstallationsScan::scanLegacyLogFiles(bool isActionLogSession) {
    if (isActionLogSession) {
        return;
    }
    found_.legacyLogFiles.clear();
    if (found_.previousInstallationKind != kRegisteredInstallation) {
        scanOwnLog();
    }
    found_.externalLegacyCount = 0;
    for (const std::int32_t node : childrenOf(kUninstallPath, "LegacyInstallLogFile")) {
        scanLegacyLog(node);
    }
    if (found_.externalLegacyCount > found_.legacyInstallationCount) {
        debugLog_.print(
            "WARNING: Count of legacy installation log files is more than detected from registry (%d > %d)",
            found_.externalLegacyCount, found_.legacyInstallationCount);
    }
}

void EarlierInstallationsScan::scanOwnLog() {
    PathText path;
    if (parts_.product.getInstallLogFile(path.data(), kPathCapacity) < 0) {
        debugLog_.print("ERROR: Installation does not have specified uninstall log file!");
        return;
    }
    if (!isPresent(path.c_str())) {
        return;
    }
    found_.previousInstallationKind = kLoggedInstallation;
    char name[kNameCapacity] = "";
    parts_.product.getFullName(name, kNameCapacity);
    OUtils::normalizePath(path.data());
    found_.legacyLogFiles.push_back({name, path.c_str()});
    debugLog_.print(
        "WARNING: Previous installation log detected with no previous installation in registry (%s)",
        path.c_str());
}

void EarlierInstallationsScan::scanLegacyLog(std::int32_t node) {
    const char* application = parts_.description.getAttribute(node, "AppName");
    if (application == nullptr) {
        debugLog_.print("WARNING: No Application name specified to a legacy application!");
        return;
    }
    PathText path;
    parts_.expressions.expandVariables(parts_.description.getText(node), path.data(), kPathCapacity, false);
    if (isPresent(path.c_str())) {
        ++found_.externalLegacyCount;
        OUtils::normalizePath(path.data());
        found_.legacyLogFiles.push_back({application, path.c_str()});
    }
}

void EarlierInstallationsScan::scanExternalLegacy() {
    found_.externalLegacyCount = 0;
    for (const std::int32_t node : childrenOf(kProductPath, "ExternalLegacyApplication")) {
        found_.externalLegacyCount += countExternal(node);
    }
    debugLog_.print("Found %d external legacy installations.", found_.externalLegacyCount);
}

std::int32_t EarlierInstallationsScan::countExternal(std::int32_t node) {
    const PXML& description = parts_.description;
    const char* name = description.getText(node);
    if (name == nullptr ||
        parts_.expressions.evaluateCondition(description.getAttribute(node, "Condition")) == 0) {
        return 0;
    }
    const ExternalDetails details(description.getAttribute(node, "Details"));
    if (!details.substring) {
        return parts_.system.findUninstallEntry(name, details.flags) ? 1 : 0;
    }
    const char* publisher = description.getAttribute(node, "Publisher");
    return static_cast<std::int32_t>(
        parts_.system.findEntriesByPublisher(name, publisher == nullptr ? "" : publisher, details.flags)
            .size());
}
