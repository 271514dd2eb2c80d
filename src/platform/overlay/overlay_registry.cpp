#include "platform/overlay/overlay_registry.h"

#include <algorithm>
#include <utility>

#include "base/text_functions.h"

using platform::RegistryChange;
using platform::RegistryRoot;
using platform::RegistryView;

OverlayRegistry::Target OverlayRegistry::targetOf(RegistryRoot root, std::string_view path,
                                                  RegistryView view) const {
    Target whole;
    whole.key = rules_.canonical({root, std::string(path), view});
    for (std::string& level : OUtils::splitText(whole.key.path, '\\')) {
        if (!level.empty()) {
            whole.levels.push_back(std::move(level));
        }
    }
    return upTo(whole, whole.levels.size());
}

OverlayRegistry::Target OverlayRegistry::upTo(const Target& target, std::size_t levels) const {
    Target part;
    part.key.root = target.key.root;
    part.key.view = target.key.view;
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) {
        const std::string& level = target.levels[i];
        part.key.path += (i == 0 ? "" : "\\") + level;
        text += '\0' + rules_.nameKey(level);
        part.levels.push_back(level);
    }
    part.address = {part.key.root, part.key.view, std::move(text)};
    return part;
}

const OverlayRegistry::Key* OverlayRegistry::find(const Target& target) const {
    const auto found = keys_.find(target.address);
    return found == keys_.end() ? nullptr : &found->second;
}

// Whether the base's key of this address is the one that is meant. Nothing of the base is seen below a key
// that was deleted, even if it was made again.
bool OverlayRegistry::showsBase(const Target& target) const {
    for (std::size_t levels = 1; levels <= target.levels.size(); ++levels) {
        const Key* const key = find(upTo(target, levels));
        if (key != nullptr && key->presence != Presence::kBases) {
            return false;
        }
    }
    return true;
}

int OverlayRegistry::statusOf(const Target& target) {
    if (showsBase(target)) {
        return base_.testKey(target.key.root, target.key.path, target.key.view);
    }
    const Key* const key = find(target);
    return key != nullptr && key->presence == Presence::kMade ? platform::kRegOk : platform::kRegNotFound;
}

// The key must be there.
OverlayRegistry::Key& OverlayRegistry::changed(const Target& target) {
    Key& key = keys_[target.address];
    if (key.key.path.empty()) {
        key.key = target.key;
        key.name = target.levels.empty() ? "" : target.levels.back();
        key.wasThere = true;
    }
    return key;
}

int OverlayRegistry::testKey(RegistryRoot root, std::string_view path, RegistryView view) {
    return statusOf(targetOf(root, path, view));
}

int OverlayRegistry::createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) {
    outCreated = 0;
    const Target whole = targetOf(root, path, view);
    if (!std::ranges::all_of(whole.levels, [&](const auto& level) { return rules_.isKeyName(level); })) {
        return platform::kRegBadArgument;
    }
    for (std::size_t levels = 1; levels <= whole.levels.size(); ++levels) {
        const Target target = upTo(whole, levels);
        const int status = statusOf(target);
        // A key that can't be read is there.
        if (status == platform::kRegOk ||
            (status == platform::kRegAccessDenied && levels < whole.levels.size())) {
            continue;
        }
        const int made = status == platform::kRegNotFound ? makeLevel(target) : status;
        if (made != platform::kRegOk) {
            return made;
        }
        ++outCreated;
    }
    return platform::kRegOk;
}

int OverlayRegistry::makeLevel(const Target& target) {
    if (const int status = rules_.wouldRefuse(target.key); status != platform::kRegOk) {
        return status;
    }
    Key& key = keys_[target.address];
    key.key = target.key;
    key.name = target.levels.back();
    key.presence = Presence::kMade;
    return platform::kRegOk;
}

int OverlayRegistry::deleteKey(RegistryRoot root, std::string_view path, RegistryView view) {
    const Target target = targetOf(root, path, view);
    if (target.levels.empty()) {
        return rules_.statusOfRootDeletion();
    }
    std::vector<std::string> subkeys;
    int status = statusOf(target);
    status = status != platform::kRegOk ? status : listKeys(root, path, view, subkeys);
    if (status != platform::kRegOk) {
        return status;
    }
    status = subkeys.empty() ? rules_.wouldRefuse(target.key) : platform::kRegAccessDenied;
    if (status != platform::kRegOk) {
        return status;
    }
    const bool wasThere = showsBase(target) || keys_[target.address].wasThere;
    if (wasThere) {
        Key& key = changed(target);
        key.presence = Presence::kGone;
        key.wasThere = true;
        key.values.clear();
    } else {
        keys_.erase(target.address);
    }
    return platform::kRegOk;
}

int OverlayRegistry::listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                              std::vector<std::string>& outNames) {
    outNames.clear();
    const Target target = targetOf(root, path, view);
    int status = statusOf(target);
    if (status == platform::kRegOk && showsBase(target)) {
        status = base_.listKeys(target.key.root, target.key.path, target.key.view, outNames);
    }
    if (status != platform::kRegOk) {
        return status;
    }
    const std::string prefix = std::get<2>(target.address) + '\0';
    std::erase_if(outNames, [&](const std::string& name) {
        Address address = target.address;
        std::get<2>(address) = prefix + rules_.nameKey(name);
        const auto found = keys_.find(address);
        return found != keys_.end() && found->second.presence != Presence::kBases;
    });
    for (auto at = keys_.upper_bound(target.address); at != keys_.end(); ++at) {
        const std::string& text = std::get<2>(at->first);
        if (std::get<0>(at->first) != target.key.root || std::get<1>(at->first) != target.key.view ||
            !text.starts_with(prefix)) {
            break;
        }
        if (text.find('\0', prefix.size()) == std::string::npos && at->second.presence == Presence::kMade) {
            outNames.push_back(at->second.name);
        }
    }
    std::ranges::sort(outNames, {}, [&](const std::string& name) { return rules_.nameKey(name); });
    return platform::kRegOk;
}

int OverlayRegistry::readValue(RegistryRoot root, std::string_view path, RegistryView view,
                               std::string_view name, platform::RegistryValue& outValue) {
    const Target target = targetOf(root, path, view);
    if (const int status = statusOf(target); status != platform::kRegOk) {
        return status;
    }
    if (const Key* const key = find(target); key != nullptr) {
        const auto found = key->values.find(rules_.nameKey(name));
        if (found != key->values.end() && found->second.value) {
            outValue = *found->second.value;
        }
        if (found != key->values.end() || key->presence != Presence::kBases) {
            return found != key->values.end() && found->second.value ? platform::kRegOk
                                                                     : platform::kRegNotFound;
        }
    }
    return showsBase(target)
               ? base_.readValue(target.key.root, target.key.path, target.key.view, name, outValue)
               : platform::kRegNotFound;
}

bool OverlayRegistry::baseHas(const Target& target, std::string_view valueName) {
    platform::RegistryValue value;
    return showsBase(target) && base_.readValue(target.key.root, target.key.path, target.key.view, valueName,
                                                value) != platform::kRegNotFound;
}

int OverlayRegistry::writeValue(RegistryRoot root, std::string_view path, RegistryView view,
                                std::string_view name, const platform::RegistryValue& value) {
    const Target target = targetOf(root, path, view);
    int status = rules_.isValueName(name) ? statusOf(target) : platform::kRegBadArgument;
    status = status != platform::kRegOk ? status : rules_.wouldRefuse(target.key);
    if (status != platform::kRegOk) {
        return status;
    }
    const bool isBases = baseHas(target, name);
    NamedValue& entry = changed(target).values[rules_.nameKey(name)];
    if (!entry.value) {
        entry.name = name;
    }
    entry.value = value;
    entry.isBases = isBases;
    return platform::kRegOk;
}

int OverlayRegistry::deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                                 std::string_view name) {
    const Target target = targetOf(root, path, view);
    platform::RegistryValue present;
    int status = readValue(root, path, view, name, present);
    status = status != platform::kRegOk ? status : rules_.wouldRefuse(target.key);
    if (status != platform::kRegOk) {
        return status;
    }
    Key& key = changed(target);
    if (baseHas(target, name)) {
        key.values[rules_.nameKey(name)] = {std::string(name), std::nullopt, true};
    } else {
        key.values.erase(rules_.nameKey(name));
    }
    return platform::kRegOk;
}

// The base's values first, in its order.
int OverlayRegistry::listValues(RegistryRoot root, std::string_view path, RegistryView view,
                                std::vector<std::string>& outNames) {
    outNames.clear();
    const Target target = targetOf(root, path, view);
    int status = statusOf(target);
    if (status == platform::kRegOk && showsBase(target)) {
        status = base_.listValues(target.key.root, target.key.path, target.key.view, outNames);
    }
    const Key* const key = find(target);
    if (status != platform::kRegOk || key == nullptr) {
        return status;
    }
    std::erase_if(outNames, [&](const std::string& name) {
        const auto found = key->values.find(rules_.nameKey(name));
        return found != key->values.end() && !found->second.value;
    });
    for (const auto& [text, entry] : key->values) {
        if (entry.value && !entry.isBases) {
            outNames.push_back(entry.name);
        }
    }
    return platform::kRegOk;
}

void OverlayRegistry::addValues(const Key& key, std::vector<RegistryChange>& ioChanges) {
    using What = RegistryChange::What;
    for (const auto& [text, entry] : key.values) {
        const What what = !entry.value ? What::kDeleted : entry.isBases ? What::kChanged : What::kCreated;
        ioChanges.push_back({what, key.key, entry.name, entry.value.value_or(platform::RegistryValue{})});
    }
}

std::vector<RegistryChange> OverlayRegistry::changes() const {
    using What = RegistryChange::What;
    std::vector<RegistryChange> all;
    for (const auto& [address, key] : keys_) {
        if (key.wasThere && key.presence != Presence::kBases) {
            all.push_back({What::kDeleted, key.key});
        }
        if (key.presence == Presence::kMade) {
            all.push_back({What::kCreated, key.key});
        }
        addValues(key, all);
    }
    return all;
}
