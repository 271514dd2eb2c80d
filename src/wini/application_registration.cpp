#include "wini/application_registration.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "contracts/system_operations.h"
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

}  // namespace

bool ApplicationRegistration::registerApplication(const ApplicationEntry& entry) {
    if (!canBeEntry(entry.name)) {
        debugLog_.line("ERROR: \"" + entry.name + "\" can not be registered as an application");
        return false;
    }
    const std::string key = UninstallList::keyOf(entry.name);
    int created = 0;
    int status = registry_.createKey(kRoot, key, kView, created);
    if (status != platform::kRegOk) {
        debugLog_.print("ERROR: The entry \"%s\" can not be made (%d)", key.c_str(), status);
        return false;
    }
    if (created > kEntryLevels) {
        noteLevels(created - kEntryLevels);
    }
    const std::pair<const char*, std::string> values[] = {
        {"DisplayIcon", entry.command},    {"DisplayName", entry.name},
        {"DisplayVersion", entry.version}, {"HelpLink", entry.website},
        {"Publisher", kPublisher},         {"UninstallString", entry.command + ' ' + entry.arguments},
    };
    bool written = true;
    for (const auto& [name, text] : values) {
        status = registry_.writeValue(kRoot, key, kView, name, {platform::kRegString, text});
        if (status != platform::kRegOk) {
            debugLog_.print("ERROR: \"%s\" of the entry \"%s\" can not be written (%d)", name, key.c_str(),
                            status);
            written = false;
        }
    }
    return written;
}

void ApplicationRegistration::noteLevels(int count) {
    const std::string bytes{static_cast<char>(count), 0, 0, 0};
    registry_.writeValue(kRoot, UninstallList::kListKey, kView, kLevelsValue, {platform::kRegDword, bytes});
}

bool ApplicationRegistration::removeUninstallEntry(std::string_view applicationName) {
    if (!canBeEntry(applicationName) ||
        registry_.deleteKey(kRoot, UninstallList::keyOf(applicationName), kView) != platform::kRegOk) {
        return false;
    }
    removeOwnList();
    return true;
}

void ApplicationRegistration::removeOwnList() {
    platform::RegistryValue levels;
    if (registry_.readValue(kRoot, UninstallList::kListKey, kView, kLevelsValue, levels) !=
            platform::kRegOk ||
        levels.type != platform::kRegDword || levels.data.empty()) {
        return;
    }
    std::string key(UninstallList::kListKey);
    std::vector<std::string> values;
    for (unsigned left = static_cast<unsigned char>(levels.data[0]); left > 0; --left) {
        // Others may have put something there meanwhile.
        const bool isList = key == UninstallList::kListKey;
        if (registry_.listValues(kRoot, key, kView, values) != platform::kRegOk ||
            values.size() > (isList ? 1U : 0U) ||
            registry_.deleteKey(kRoot, key, kView) != platform::kRegOk) {
            return;
        }
        key.resize(std::min(key.rfind('\\'), key.size()));
    }
}
