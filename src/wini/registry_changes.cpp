#include "wini/registry_changes.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "platform/registry.h"
#include "wini/registry_access.h"
#include "wini/undo_text.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryValue;

constexpr auto kView = platform::RegistryView::kNative;

// A key as the description names it.
struct KeyPlace {
    RegistryRoot root;
    std::string path;  // separated by `\`
};

// None when an argument is missing or the root has another name.
std::optional<KeyPlace> keyPlaceOf(const char* place, const char* path) {
    const auto root = registryRootOf(place);
    if (!root.has_value() || path == nullptr) {
        return std::nullopt;
    }
    KeyPlace key{*root, path};
    std::replace(key.path.begin(), key.path.end(), '/', '\\');
    return key;
}

bool canBeLogged(const KeyPlace& key) {
    return key.path.size() <= RegistryChanges::kPathLimit && UndoText::isLastField(key.path);
}

bool canBeLogged(const KeyPlace& key, std::string_view place, std::string_view valueName) {
    return canBeLogged(key) && UndoText::isLastField(valueName) &&
           UndoText::fitsRecord(ActionLogFormat::kRegistryValue, UndoText::of({place, key.path, valueName}));
}

// The paths of all levels, the topmost first. Empty components don't count: the registry has none.
std::vector<std::string> levelsOf(const std::string& path) {
    std::vector<std::string> components;
    OUtils::splitText(path.c_str(), '\\', components);
    std::vector<std::string> levels;
    for (const std::string& component : components) {
        if (!component.empty()) {
            levels.push_back(levels.empty() ? component : levels.back() + '\\' + component);
        }
    }
    return levels;
}

std::string doubleWordOf(const char* text) {
    constexpr long long kLargest = 0xFFFFFFFF;
    const auto number = static_cast<std::uint32_t>(std::min(std::strtoll(text, nullptr, 16), kLargest));
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(number >> shift & 0xFF);
    }
    return bytes;
}

// Letters of both cases have the bit 64, digits don't; what is neither gives some number.
unsigned hexDigit(char digit) {
    const auto code = static_cast<unsigned char>(digit);
    return (code & 0x0F) + ((code & 0x40) != 0 ? 9 : 0);
}

// Half a byte too many makes all of it zero.
std::string bytesOf(std::string_view text) {
    std::string bytes(text.size() / 2, '\0');
    for (std::size_t i = 0; text.size() % 2 == 0 && i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>((hexDigit(text[2 * i]) << 4 | hexDigit(text[2 * i + 1])) & 0xFF);
    }
    return bytes;
}

RegistryValue valueOf(const char* type, const char* data) {
    const std::string_view word = type == nullptr ? "" : type;
    if (word.empty() || word == "REG_SZ") {
        return {platform::kRegString, data};
    }
    if (word == "REG_DWORD") {
        return {platform::kRegDword, doubleWordOf(data)};
    }
    if (word == "REG_BINARY") {
        return {platform::kRegBinary, bytesOf(data)};
    }
    return {platform::kRegString, ""};
}

}  // namespace

int RegistryChanges::writeRegistryValue(const char* place, const char* path, const char* type,
                                        const char* valueName, const char* data, int& outCreated) {
    outCreated = 0;
    const auto key = keyPlaceOf(place, path);
    if (!key.has_value() || valueName == nullptr || data == nullptr) {
        return -1;
    }
    if (!canBeLogged(*key, place, valueName)) {
        return platform::kRegBadArgument;
    }
    const RegistryValue value = valueOf(type, data);
    int status = registry_.writeValue(key->root, key->path.c_str(), kView, valueName, value);
    if (status == platform::kRegNotFound) {
        outCreated = createRegistryKey(place, path);
        status = registry_.writeValue(key->root, key->path.c_str(), kView, valueName, value);
    }
    if (status != platform::kRegOk) {
        deleteRegistryKeys(place, path, outCreated);
        outCreated = 0;
    }
    return status;
}

int RegistryChanges::createRegistryKey(const char* place, const char* path) {
    const auto key = keyPlaceOf(place, path);
    if (!key.has_value() || !canBeLogged(*key) ||
        registry_.testKey(key->root, key->path.c_str(), kView) != platform::kRegNotFound) {
        return 0;
    }
    int count = 0;
    std::string made;
    for (const std::string& level : levelsOf(key->path)) {
        int created = 0;
        if (registry_.createKey(key->root, level.c_str(), kView, created) != platform::kRegOk) {
            deleteRegistryKeys(place, made.c_str(), count);
            return 0;
        }
        count += created;
        made = level;
    }
    return count;
}

int RegistryChanges::deleteRegistryValue(const char* place, const char* path, const char* valueName) {
    const auto key = keyPlaceOf(place, path);
    if (!key.has_value() || valueName == nullptr) {
        return -1;
    }
    return registry_.deleteValue(key->root, key->path.c_str(), kView, valueName);
}

int RegistryChanges::deleteRegistryKeys(const char* place, const char* path, int levels) {
    const auto key = keyPlaceOf(place, path);
    if (!key.has_value()) {
        return 0;
    }
    const std::vector<std::string> all = levelsOf(key->path);
    if (levels < 1 || all.size() < static_cast<std::size_t>(levels)) {
        return 0;
    }
    int deleted = 0;
    for (auto level = all.rbegin(); level != all.rbegin() + levels; ++level) {
        // A key that stays keeps the ones above it, which fail as well.
        deleted += registry_.deleteKey(key->root, level->c_str(), kView) == platform::kRegOk ? 1 : 0;
    }
    return deleted;
}
