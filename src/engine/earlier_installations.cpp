#include "engine/earlier_installations.h"

#include <algorithm>
#include <iterator>

#include "base/errors.h"
#include "base/fixed_text.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "description/control_variables.h"
#include "description/expressions.h"
#include "description/product_description.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "engine/action_log_reader.h"
#include "engine/external_products.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "support/p_mem_stream.h"
#include "support/utilities.h"

namespace {

constexpr vocabulary::ElementPath kProductPath = "TandrelGroupInstallation/ProductDesc";
constexpr vocabulary::ElementPath kLogPath = "TandrelGroupInstallation/Installation/Uninstall/InstallLogFile";
constexpr vocabulary::ElementPath kUninstallPath = "TandrelGroupInstallation/Installation/Uninstall";

}  // namespace

EarlierInstallations::EarlierInstallations(const EngineParts& parts)
    : parts_(parts), tags_(parts.model.description, parts.model.expressions) {}

std::vector<std::string> EarlierInstallations::formerNames() {
    std::vector<std::string> names;
    for (const std::int32_t node : childrenOf(kProductPath, "LegacyApplication")) {
        if (const auto name = tags_.textOf(node)) {
            names.emplace_back(*name);
        }
    }
    for (const std::int32_t node : childrenOf(kUninstallPath, "LegacyInstallLogFile")) {
        if (const auto name = tags_.attribute(node, "AppName")) {
            names.emplace_back(*name);
        }
    }
    return names;
}

void EarlierInstallations::findRegistered(bool isActionLogSession) {
    parts_.debugLog.line("Checking for previous and legacy installations for this product");
    if (!removalTried_) {
        kind_ = kNoPreviousInstallation;
        legacyCount_ = 0;
        if (!isActionLogSession) {
            scanRegistered();
        }
    }
    if (kind_ != kNoPreviousInstallation || legacyCount_ >= 1) {
        setControl(ControlVariable::kShouldUninstall, "1");
    }
    if (kind_ != kNoPreviousInstallation) {
        importVariables();
    }
}

void EarlierInstallations::scanRegistered() {
    const std::optional<std::string> name = parts_.model.product.fullName();
    if (name && parts_.system.findUninstallEntry(*name, 0)) {
        kind_ = kRegisteredInstallation;
    }
    for (const std::int32_t node : childrenOf(kProductPath, "LegacyApplication")) {
        const auto legacy = tags_.textOf(node);
        if (legacy && parts_.system.findUninstallEntry(*legacy, 0)) {
            ++legacyCount_;
            parts_.debugLog.line("Found installed legacy app: \"" + std::string(*legacy) + "\"");
        }
    }
}

// An earlier log that is missing or damaged doesn't keep the user from installing. One that is there and
// can't be read does: without its variables the new version takes files of the earlier one for the user's, or
// the user's for its own.
void EarlierInstallations::importVariables() {
    parts_.debugLog.line("Initializing previous install's variable values from log");
    const std::string name = parts_.model.product.fullName().value_or("");
    const std::optional<std::string> path = parts_.system.applicationLogFile(name);
    std::string content;
    if (path) {
        const int status = OUtils::readWholeFile(*path, content, parts_.machine.files);
        if (status != 0 && parts_.machine.files.kindOf(*path) == platform::PathKind::kFile) {
            const std::string text = "The action log of the earlier installation, " +
                                     platform::writtenPath(*path) +
                                     ", can't be read: " + OUtils::readingErrorText(status);
            throw InstallerError("ERROR: %s", text.c_str());
        }
    }
    try {
        importVariables(name, path, content);
    } catch (const GenericError& error) {
        parts_.debugLog.line(error.what());
    }
}

void EarlierInstallations::importVariables(const std::string& name, const std::optional<std::string>& path,
                                           const std::string& content) {
    if (name.empty()) {
        throw InstallerError("ERROR: Obtaining app name");
    }
    if (!path) {
        throw InstallerError("ERROR: Obtaining actionlog filename (%s)", name.c_str());
    }
    if (parts_.machine.files.kindOf(*path) != platform::PathKind::kFile) {
        throw InstallerError("ERROR: Opening action file (%s)", path->c_str());
    }
    PMemStream log(content);
    ActionLogReader(&log, parts_.debugLog)
        .readVariables([this](const std::string& key, const std::string& value) {
            parts_.model.variables.set(key, value);
        });
}

void EarlierInstallations::findOthers(bool isActionLogSession) {
    if (!isActionLogSession) {
        scanLogFiles();
    }
    if (legacyCount_ >= 1 || legacyLogCount_ >= 1) {
        setControl(ControlVariable::kLegacyInstallation, "1");
    }
    if (kind_ != kNoPreviousInstallation) {
        setControl(ControlVariable::kPreviousInstallation, std::to_string(kind_));
        setControl(ControlVariable::kShouldUninstall, "1");
    }
    scanExternal();
}

void EarlierInstallations::scanLogFiles() {
    legacyLogFiles_.clear();
    if (kind_ != kRegisteredInstallation) {
        scanOwnLog();
    }
    legacyLogCount_ = 0;
    for (const std::int32_t node : childrenOf(kUninstallPath, "LegacyInstallLogFile")) {
        scanLegacyLog(node);
    }
    if (legacyLogCount_ > legacyCount_) {
        parts_.debugLog.print(
            "WARNING: Count of legacy installation log files is more than detected from registry (%d > %d)",
            legacyLogCount_, legacyCount_);
    }
}

void EarlierInstallations::scanOwnLog() {
    if (!tags_.textOf(parts_.model.description.findPath(kLogPath))) {
        parts_.debugLog.line("ERROR: Installation does not have specified uninstall log file!");
        return;
    }
    const std::string path = parts_.model.product.installLogFile().value_or("");
    if (!isPresent(path)) {
        return;
    }
    kind_ = kLoggedInstallation;
    const std::string normalized = normalizedPath(path);
    legacyLogFiles_.push_back({parts_.model.product.fullName().value_or(""), normalized});
    parts_.debugLog.line(
        "WARNING: Previous installation log detected with no previous installation in registry (" +
        normalized + ")");
}

void EarlierInstallations::scanLegacyLog(std::int32_t node) {
    const auto application = tags_.attribute(node, "AppName");
    if (!application) {
        parts_.debugLog.line("WARNING: No Application name specified to a legacy application!");
        return;
    }
    const std::string path =
        parts_.model.expressions.expand(tags_.textOf(node).value_or(""), PathText::capacity()).value_or("");
    if (isPresent(path)) {
        ++legacyLogCount_;
        legacyLogFiles_.push_back({std::string(*application), normalizedPath(path)});
    }
}

void EarlierInstallations::scanExternal() {
    ExternalProducts products(tags_, parts_.system);
    std::int32_t count = 0;
    for (const std::int32_t node : childrenOf(kProductPath, "ExternalLegacyApplication")) {
        count += products.countInstalled(node);
    }
    parts_.debugLog.print("Found %d external legacy installations.", count);
    const std::string_view variable =
        parts_.model.controls.nameOf(ControlVariable::kExternalLegacyInstallation);
    if (!variable.empty()) {
        setControl(ControlVariable::kExternalLegacyInstallation, std::to_string(count));
    } else if (count > 0) {
        parts_.debugLog.line(
            "WARNING: External legacy installation variable is not specified and installations were found!");
    }
}

bool EarlierInstallations::remove(const Removers& removers) {
    if (removalTried_) {
        return isRemoved_;
    }
    removalTried_ = true;
    if (!isWanted()) {
        return true;
    }
    isRemoved_ = false;
    const bool areRegisteredRemoved = removeRegistered(removers);
    isRemoved_ = removeLogged(removers) && areRegisteredRemoved;
    if (!isRemoved_) {
        setControl(ControlVariable::kUninstallError, "");
    }
    return isRemoved_;
}

bool EarlierInstallations::isWanted() {
    const std::string_view wish = parts_.model.controls.nameOf(ControlVariable::kShouldUninstall);
    return OUtils::textToInteger(parts_.model.variables.get(wish).value_or("")) != 0;
}

std::vector<ProductRemoval::Request> EarlierInstallations::wanted() {
    std::vector<ProductRemoval::Request> requests;
    if (removalTried_ || !isWanted()) {
        return requests;
    }
    for (const std::string& name : registeredLegacyNames()) {
        requests.push_back({name, "", false});
    }
    const std::string ownName = parts_.model.product.fullName().value_or("");
    if (!ownName.empty() && parts_.system.findUninstallEntry(ownName, 0)) {
        requests.push_back({ownName, "", true});
    }
    for (const LegacyLogFile& log : loggedProducts()) {
        requests.push_back({log.applicationName, log.logPath, false});
    }
    return requests;
}

std::vector<std::string> EarlierInstallations::registeredLegacyNames() {
    std::vector<std::string> names;
    for (const std::int32_t node : childrenOf(kProductPath, "LegacyApplication")) {
        const std::string name(tags_.textOf(node).value_or(""));
        if (!name.empty() && parts_.system.findUninstallEntry(name, 0)) {
            names.push_back(name);
        }
    }
    return names;
}

// Those whose logs are there; none while the list of applications is known to have all of them.
std::vector<LegacyLogFile> EarlierInstallations::loggedProducts() {
    std::vector<LegacyLogFile> products;
    if (kind_ == kLoggedInstallation || legacyLogCount_ > legacyCount_) {
        std::ranges::copy_if(legacyLogFiles_, std::back_inserter(products),
                             [this](const LegacyLogFile& log) { return isPresent(log.logPath); });
    }
    return products;
}

bool EarlierInstallations::removeRegistered(const Removers& removers) {
    bool isRemoved = true;
    for (const std::string& name : registeredLegacyNames()) {
        // The removal of one may take another one along. What is left of an application can be removed again
        // only by its entry.
        if (parts_.system.findUninstallEntry(name, 0)) {
            const bool isDone = removers.product({name, "", false}) && removers.entry(name);
            isRemoved = isDone && isRemoved;
        }
    }
    const std::optional<std::string> ownName = parts_.model.product.fullName();
    if (!ownName) {
        throw InstallerError("ERROR: Could not obtain Application name");
    }
    return (!parts_.system.findUninstallEntry(*ownName, 0) || removers.product({*ownName, "", true})) &&
           isRemoved;
}

bool EarlierInstallations::removeLogged(const Removers& removers) {
    bool isRemoved = true;
    for (const LegacyLogFile& log : loggedProducts()) {
        if (!isPresent(log.logPath)) {
            continue;  // it went with another one
        }
        isRemoved = removers.product({log.applicationName, log.logPath, false}) && isRemoved;
        parts_.debugLog.line("WARNING: Uninstalling previous installation using fallback logic : " +
                             log.applicationName + " (" + log.logPath + ")");
    }
    return isRemoved;
}

std::vector<std::int32_t> EarlierInstallations::childrenOf(std::string_view path,
                                                           vocabulary::ElementName name) const {
    const PXML& description = parts_.model.description;
    std::vector<std::int32_t> nodes;
    const std::int32_t parent = description.findPath(path);
    if (parent < 0) {
        return nodes;
    }
    for (std::int32_t node = description.findChild(parent, name); node >= 0;
         node = description.findChild(parent, name, node)) {
        nodes.push_back(node);
    }
    return nodes;
}

bool EarlierInstallations::isPresent(const std::string& path) {
    return !path.empty() && parts_.machine.files.exists(path);
}

void EarlierInstallations::setControl(ControlVariable role, std::string_view value) {
    const std::string_view name = parts_.model.controls.nameOf(role);
    if (!name.empty()) {
        parts_.model.variables.set(name, value);
    }
}
