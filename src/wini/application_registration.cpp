#include "wini/application_registration.h"

#include <utility>
#include <vector>

#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "platform/error_text.h"
#include "platform/registry.h"
#include "wini/uninstall_list.h"

namespace {

constexpr auto kRoot = platform::RegistryRoot::kLocalMachine;
constexpr auto kView = platform::RegistryView::kNative;

// Of the list's key: how many levels of its path were made together with it.
constexpr std::string_view kLevelsValue = "TandrelCreatedLevels";
constexpr int kEntryLevels = 1;
constexpr char kPublisher[] = "Tandrel Software Ltd";

bool canBeEntry(std::string_view name) {
    return !name.empty() && name.find('\\') == std::string_view::npos;
}

std::string parentOf(const std::string& key) {
    const std::size_t separator = key.rfind('\\');
    return separator == std::string::npos ? "" : key.substr(0, separator);
}

}  // namespace

std::string ApplicationRegistration::entryFault() const {
    return fault_ == platform::kRegOk ? "" : platform::registryErrorText(fault_);
}

bool ApplicationRegistration::registerApplication(const ApplicationEntry& entry) {
    fault_ = platform::kRegOk;
    if (!canBeEntry(entry.name)) {
        debugLog_.line("ERROR: \"" + entry.name + "\" can not be registered as an application");
        return false;
    }
    const std::string key = UninstallList::keyOf(entry.name);
    int created = 0;
    int status = registry_.createKey(kRoot, key, kView, created);
    fault_ = status;
    if (status != platform::kRegOk) {
        debugLog_.line("ERROR: The entry \"" + key + "\" can not be made (" + std::to_string(status) + ")");
        return false;
    }
    if (created > kEntryLevels) {
        noteLevels(created - kEntryLevels);
    }
    const std::pair<const char*, std::string> values[] = {
        {"DisplayIcon", entry.command},
        {"DisplayName", entry.name},
        {"DisplayVersion", entry.version},
        {"HelpLink", entry.website},
        {"Publisher", entry.publisher.empty() ? kPublisher : entry.publisher},
        {"UninstallString", entry.command + ' ' + entry.arguments},
    };
    bool written = true;
    for (const auto& [name, text] : values) {
        status = registry_.writeValue(kRoot, key, kView, name, {platform::kRegString, text});
        if (status != platform::kRegOk) {
            debugLog_.line("ERROR: \"" + std::string(name) + "\" of the entry \"" + key +
                           "\" can not be written (" + std::to_string(status) + ")");
            written = false;
            fault_ = fault_ == platform::kRegOk ? status : fault_;
        }
    }
    return written;
}

void ApplicationRegistration::noteLevels(int count) {
    const std::string bytes{static_cast<char>(count), 0, 0, 0};
    registry_.writeValue(kRoot, UninstallList::kListKey, kView, kLevelsValue, {platform::kRegDword, bytes});
}

bool ApplicationRegistration::removeUninstallEntry(std::string_view applicationName) {
    fault_ = platform::kRegOk;
    if (canBeEntry(applicationName)) {
        fault_ = registry_.deleteKey(kRoot, UninstallList::keyOf(applicationName), kView);
    }
    if (!canBeEntry(applicationName) || fault_ != platform::kRegOk) {
        return false;
    }
    removeOwnList();
    return true;
}

void ApplicationRegistration::removeOwnList() {
    std::string key(UninstallList::kListKey);
    std::vector<std::string> values;
    for (int left = ownLevels(); left > 0; --left) {
        // Others may have put something there meanwhile.
        const bool isList = key == UninstallList::kListKey;
        if (registry_.listValues(kRoot, key, kView, values) != platform::kRegOk ||
            values.size() > (isList ? 1U : 0U) ||
            registry_.deleteKey(kRoot, key, kView) != platform::kRegOk) {
            return;
        }
        key = parentOf(key);
    }
}

bool ApplicationRegistration::leaveKeysToList(std::string_view path, int levels) {
    const int own = ownLevels();
    std::string above(UninstallList::kListKey);
    for (int level = 0; level < own; ++level) {
        above = parentOf(above);
    }
    if (own == 0 || levels < 1 || !OUtils::equalsIgnoreCase(above, path)) {
        return false;
    }
    noteLevels(own + levels);
    return ownLevels() == own + levels;
}

int ApplicationRegistration::ownLevels() {
    platform::RegistryValue levels;
    const bool isNoted = registry_.readValue(kRoot, UninstallList::kListKey, kView, kLevelsValue, levels) ==
                             platform::kRegOk &&
                         levels.type == platform::kRegDword && !levels.data.empty();
    return isNoted ? static_cast<unsigned char>(levels.data[0]) : 0;
}
