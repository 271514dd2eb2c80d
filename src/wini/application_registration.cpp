#include "wini/application_registration.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "base/fixed_text.h"
#include "contracts/install_exchange_info.h"
#include "platform/registry.h"
#include "wini/uninstall_list.h"

namespace {

constexpr auto kRoot = platform::RegistryRoot::kLocalMachine;
constexpr auto kView = platform::RegistryView::kNative;

// Of the list's key: how many levels of its path were made together with it.
constexpr char kLevelsValue[] = "TandrelCreatedLevels";
constexpr int kEntryLevels = 1;

using NameText = FixedText<1024>;

// The arguments hold one path and one name, and so never get too long.
static_assert(PathText::capacity() + NameText::capacity() + sizeof "-uninstall=\"\" -uninstallApp=\"\"" <
              ApplicationRegistration::kCommandSize);

// Fills `outText` by one of the getters of the product.
template <typename Text>
bool get(InstallExchangeInfo& product, int (InstallExchangeInfo::*getter)(char*, int), Text& outText) {
    return (product.*getter)(outText.data(), static_cast<int>(Text::capacity())) == 0;
}

bool holdsQuote(const char* text) {
    return std::strchr(text, '"') != nullptr;
}

bool canBeEntry(const char* name) {
    return name != nullptr && name[0] != '\0' && std::strchr(name, '\\') == nullptr;
}

}  // namespace

struct ApplicationRegistration::Entry {
    std::string command;
    std::string arguments;
    NameText name;
    NameText version;
    NameText website;
};

bool ApplicationRegistration::fail(const char* message) {
    debugLog_.print("%s", message);
    return false;
}

bool ApplicationRegistration::buildUninstallCommand(std::string& outCommand, std::string& outArguments,
                                                    bool quote) {
    outCommand.clear();
    outArguments.clear();
    FixedText<kCommandSize> command;
    if (!get(product_, &InstallExchangeInfo::getUninstallCmd, command)) {
        return fail("ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)");
    }
    PathText log;
    if (!get(product_, &InstallExchangeInfo::getInstallLogFile, log)) {
        return fail("ERROR: Could not obtain insatll log file location! (check <InstallLogFile> tag)");
    }
    NameText name;
    if (!get(product_, &InstallExchangeInfo::getFullName, name)) {
        return fail("ERROR: Could not obtain application name!");
    }
    const std::string mark = quote ? "\"" : "";
    std::string quoted = mark + command.c_str() + mark;
    // A command that fills its buffer may have been cut; a cut one would start something else.
    if (quoted.size() + 1 >= kCommandSize || holdsQuote(command.c_str()) || holdsQuote(log.c_str())) {
        return fail("ERROR: The uninstall command is too long or holds a double quote!");
    }
    outCommand = std::move(quoted);
    outArguments = std::string("-uninstall=\"") + log.c_str() + "\" -uninstallApp=\"" + name.c_str() + "\"";
    return true;
}

bool ApplicationRegistration::collect(Entry& outEntry) {
    if (!buildUninstallCommand(outEntry.command, outEntry.arguments, true)) {
        return false;
    }
    if (!get(product_, &InstallExchangeInfo::getFullName, outEntry.name)) {
        return fail("ERROR: Could not obtain application name!");
    }
    if (!get(product_, &InstallExchangeInfo::getVersion, outEntry.version)) {
        return fail(
            "ERROR: Could not obtain application full version description! (check <ProductDesc> tag)");
    }
    if (!get(product_, &InstallExchangeInfo::getWebsite, outEntry.website)) {
        return fail("ERROR: Could not obtain application web site! (check <ProductDesc> tag)");
    }
    return true;
}

bool ApplicationRegistration::registerApplication() {
    Entry entry;
    return collect(entry) && write(entry);
}

bool ApplicationRegistration::write(const Entry& entry) {
    if (!canBeEntry(entry.name.c_str())) {
        debugLog_.print("ERROR: \"%s\" can not be registered as an application", entry.name.c_str());
        return false;
    }
    const std::string key = UninstallList::keyOf(entry.name.c_str());
    int created = 0;
    int status = registry_.createKey(kRoot, key.c_str(), kView, created);
    if (status != platform::kRegOk) {
        debugLog_.print("ERROR: The entry \"%s\" can not be made (%d)", key.c_str(), status);
        return false;
    }
    if (created > kEntryLevels) {
        noteLevels(created - kEntryLevels);
    }
    const std::pair<const char*, std::string> values[] = {
        {"DisplayIcon", entry.command},
        {"DisplayName", entry.name.c_str()},
        {"DisplayVersion", entry.version.c_str()},
        {"HelpLink", entry.website.c_str()},
        {"Publisher", "Tandrel Software Ltd"},
        {"UninstallString", entry.command + ' ' + entry.arguments},
    };
    bool written = true;
    for (const auto& [name, text] : values) {
        status = registry_.writeValue(kRoot, key.c_str(), kView, name, {platform::kRegString, text});
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
    registry_.writeValue(kRoot, UninstallList::listKey(), kView, kLevelsValue, {platform::kRegDword, bytes});
}

bool ApplicationRegistration::removeUninstallEntry(const char* applicationName) {
    if (!canBeEntry(applicationName) ||
        registry_.deleteKey(kRoot, UninstallList::keyOf(applicationName).c_str(), kView) !=
            platform::kRegOk) {
        return false;
    }
    removeOwnList();
    return true;
}

void ApplicationRegistration::removeOwnList() {
    platform::RegistryValue levels;
    if (registry_.readValue(kRoot, UninstallList::listKey(), kView, kLevelsValue, levels) !=
            platform::kRegOk ||
        levels.type != platform::kRegDword || levels.data.empty()) {
        return;
    }
    std::string key = UninstallList::listKey();
    std::vector<std::string> values;
    for (unsigned left = static_cast<unsigned char>(levels.data[0]); left > 0; --left) {
        // Others may have put something there meanwhile.
        const bool isList = key == UninstallList::listKey();
        if (registry_.listValues(kRoot, key.c_str(), kView, values) != platform::kRegOk ||
            values.size() > (isList ? 1U : 0U) ||
            registry_.deleteKey(kRoot, key.c_str(), kView) != platform::kRegOk) {
            return;
        }
        key.resize(std::min(key.rfind('\\'), key.size()));
    }
}
