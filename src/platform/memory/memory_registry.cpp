#include "platform/memory/memory_registry.h"

#include "base/text_functions.h"

using platform::RegistryRoot;
using platform::RegistryView;

namespace {

std::vector<std::string> levelsOf(std::string_view path) {
    std::vector<std::string> levels;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('\\'), path.size());
        if (end > 0) {
            levels.emplace_back(path.substr(0, end));
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return levels;
}

std::string pathKey(std::string_view path) {
    std::string key;
    for (const std::string& level : levelsOf(path)) {
        key += '\0' + OUtils::toLowerAscii(level);
    }
    return key;
}

bool isAtOrBelowAny(std::string_view path, const std::vector<std::string>& tops) {
    const std::string key = pathKey(path) + '\0';
    for (const std::string& top : tops) {
        if (key.starts_with(pathKey(top) + '\0')) {
            return true;
        }
    }
    return false;
}

const char* rootName(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::kClassesRoot:
            return "HKCR";
        case RegistryRoot::kCurrentUser:
            return "HKCU";
        case RegistryRoot::kLocalMachine:
            return "HKLM";
        case RegistryRoot::kUsers:
            return "HKU";
    }
    return "?";
}

}  // namespace

MemoryRegistry::Address MemoryRegistry::addressOf(RegistryRoot root, std::string_view path,
                                                  RegistryView view) {
    return {root, view, pathKey(path)};
}

bool MemoryRegistry::isRefused(Operation operation) {
    bool refused = false;
    for (Fault& fault : faults_) {
        refused = (fault.operation == operation && --fault.remaining == 0) || refused;
    }
    return refused;
}

// Gives the number of levels made.
int MemoryRegistry::makeLevels(RegistryRoot root, std::string_view path, RegistryView view) {
    int created = 0;
    Address address{root, view, {}};
    for (const std::string& level : levelsOf(path)) {
        std::get<2>(address) += '\0' + OUtils::toLowerAscii(level);
        if (keys_.try_emplace(address, Key{level, {}}).second) {
            ++created;
        }
    }
    return created;
}

MemoryRegistry::Key* MemoryRegistry::find(const Address& address) {
    if (std::get<2>(address).empty()) {
        return &keys_[address];
    }
    const auto found = keys_.find(address);
    return found == keys_.end() ? nullptr : &found->second;
}

void MemoryRegistry::record(const char* operation, RegistryRoot root, std::string_view path,
                            RegistryView view, std::optional<std::string_view> valueName) {
    if (watcher) {
        watcher();
    }
    std::string text = std::string(operation) + " " + rootName(root) + "\\" + std::string(path);
    if (valueName.has_value()) {
        text += ":" + std::string(*valueName);
    }
    operations.push_back(text + (view == RegistryView::k32Bit ? " (32)" : ""));
}

bool MemoryRegistry::isReadOnly(std::string_view path) const {
    return isAtOrBelowAny(path, readOnly_);
}

void MemoryRegistry::setForbidden(std::string_view path) {
    readOnly_.emplace_back(path);
    forbidden_.emplace_back(path);
}

void MemoryRegistry::addKey(RegistryRoot root, std::string_view path, RegistryView view) {
    makeLevels(root, path, view);
}

void MemoryRegistry::addText(RegistryRoot root, std::string_view path, std::string_view name,
                             std::string_view text, RegistryView view) {
    makeLevels(root, path, view);
    platform::RegistryValue value;
    value.data = text;
    find(addressOf(root, path, view))->values[OUtils::toLowerAscii(name)] = {std::string(name), value};
}

bool MemoryRegistry::hasKey(RegistryRoot root, std::string_view path, RegistryView view) const {
    const Address address = addressOf(root, path, view);
    return std::get<2>(address).empty() || keys_.count(address) != 0;
}

const platform::RegistryValue* MemoryRegistry::value(RegistryRoot root, std::string_view path,
                                                     std::string_view name, RegistryView view) const {
    const auto key = keys_.find(addressOf(root, path, view));
    if (key == keys_.end()) {
        return nullptr;
    }
    const auto found = key->second.values.find(OUtils::toLowerAscii(name));
    return found == key->second.values.end() ? nullptr : &found->second.value;
}

std::map<std::string, std::string> MemoryRegistry::everything() const {
    std::map<std::string, std::string> all;
    std::map<Address, std::string> paths;
    for (const auto& [address, key] : keys_) {
        const auto& [root, view, text] = address;
        if (text.empty()) {
            continue;
        }
        const Address parent{root, view, text.substr(0, text.rfind('\0'))};
        const std::string path =
            (paths.contains(parent) ? paths[parent] : rootName(root)) + std::string("\\") + key.name;
        const std::string end = view == RegistryView::k32Bit ? " (32)" : "";
        paths[address] = path;
        all[path + end] = "key";
        for (const auto& [lower, value] : key.values) {
            std::string place = path;
            place.append(":").append(value.name).append(end);
            std::string& shown = all[place];
            shown = std::to_string(value.value.type);
            shown.append(" ").append(value.value.data);
        }
    }
    return all;
}

int MemoryRegistry::createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) {
    record("createKey", root, path, view);
    outCreated = 0;
    if (isRefused(Operation::kCreateKey)) {
        return platform::kRegAccessDenied;
    }
    if (find(addressOf(root, path, view)) != nullptr) {
        return platform::kRegOk;
    }
    if (isAtOrBelowAny(path, readOnly_)) {
        return platform::kRegAccessDenied;
    }
    outCreated = makeLevels(root, path, view);
    return platform::kRegOk;
}

int MemoryRegistry::testKey(RegistryRoot root, std::string_view path, RegistryView view) {
    if (find(addressOf(root, path, view)) == nullptr) {
        return platform::kRegNotFound;
    }
    return isAtOrBelowAny(path, forbidden_) ? platform::kRegAccessDenied : platform::kRegOk;
}

int MemoryRegistry::deleteKey(RegistryRoot root, std::string_view path, RegistryView view) {
    record("deleteKey", root, path, view);
    const Address address = addressOf(root, path, view);
    if (std::get<2>(address).empty() || find(address) == nullptr) {
        return platform::kRegNotFound;
    }
    std::vector<std::string> subkeys;
    listKeys(root, path, view, subkeys);
    if (!subkeys.empty() || isRefused(Operation::kDeleteKey) || isAtOrBelowAny(path, readOnly_)) {
        return platform::kRegAccessDenied;
    }
    keys_.erase(address);
    return platform::kRegOk;
}

int MemoryRegistry::listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                             std::vector<std::string>& outNames) {
    outNames.clear();
    if (const int status = testKey(root, path, view); status != platform::kRegOk) {
        return status;
    }
    const Address address = addressOf(root, path, view);
    const std::string prefix = std::get<2>(address) + '\0';
    for (auto at = keys_.upper_bound(address); at != keys_.end(); ++at) {
        const auto& [atRoot, atView, key] = at->first;
        if (atRoot != root || atView != view || !key.starts_with(prefix)) {
            break;
        }
        if (key.find('\0', prefix.size()) == std::string::npos) {
            outNames.push_back(at->second.name);
        }
    }
    return platform::kRegOk;
}

int MemoryRegistry::readValue(RegistryRoot root, std::string_view path, RegistryView view,
                              std::string_view name, platform::RegistryValue& outValue) {
    if (isRefused(Operation::kReadValue)) {
        return platform::kRegAccessDenied;
    }
    if (const int status = testKey(root, path, view); status != platform::kRegOk) {
        return status;
    }
    const platform::RegistryValue* found = value(root, path, name, view);
    if (found == nullptr) {
        return platform::kRegNotFound;
    }
    outValue = *found;
    return platform::kRegOk;
}

int MemoryRegistry::writeValue(RegistryRoot root, std::string_view path, RegistryView view,
                               std::string_view name, const platform::RegistryValue& value) {
    record("writeValue", root, path, view, name);
    Key* key = find(addressOf(root, path, view));
    if (key == nullptr) {
        return platform::kRegNotFound;
    }
    if (isRefused(Operation::kWriteValue) || isAtOrBelowAny(path, readOnly_)) {
        return platform::kRegAccessDenied;
    }
    NamedValue& entry = key->values[OUtils::toLowerAscii(name)];
    if (entry.name.empty()) {
        entry.name = name;
    }
    entry.value = value;
    return platform::kRegOk;
}

int MemoryRegistry::deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                                std::string_view name) {
    record("deleteValue", root, path, view, name);
    Key* key = find(addressOf(root, path, view));
    if (key == nullptr || key->values.count(OUtils::toLowerAscii(name)) == 0) {
        return platform::kRegNotFound;
    }
    if (isRefused(Operation::kDeleteValue) || isAtOrBelowAny(path, readOnly_)) {
        return platform::kRegAccessDenied;
    }
    key->values.erase(OUtils::toLowerAscii(name));
    return platform::kRegOk;
}

int MemoryRegistry::listValues(RegistryRoot root, std::string_view path, RegistryView view,
                               std::vector<std::string>& outNames) {
    outNames.clear();
    if (const int status = testKey(root, path, view); status != platform::kRegOk) {
        return status;
    }
    for (const auto& [key, entry] : find(addressOf(root, path, view))->values) {
        outNames.push_back(entry.name);
    }
    return platform::kRegOk;
}
