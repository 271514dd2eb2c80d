#include "description/registry_lookup.h"

#include <algorithm>
#include <cstdint>

#include "base/text_functions.h"
#include "base/wide_text_converter.h"
#include "contracts/system_operations.h"

namespace {

// The numbers of the types as Windows defines them.
constexpr std::uint32_t kText = 1;
constexpr std::uint32_t kExpandableText = 2;
constexpr std::uint32_t kBinary = 3;
constexpr std::uint32_t kDoubleWord = 4;

bool isText(std::uint32_t type) {
    return type == kText || type == kExpandableText;
}

// What the value takes in the registry, where texts are UTF-16 with a terminator.
std::int64_t storedBytes(const SystemRegistryValue& value) {
    return isText(value.type)
               ? static_cast<std::int64_t>(OUtils::utf8ToWide(value.data.c_str()).size() + 1) * 2
               : static_cast<std::int64_t>(value.data.size());
}

std::string hexadecimalPairs(const std::string& data) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(data.size() * 2);
    for (const char c : data) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

std::uint32_t doubleWord(const std::string& data) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4 && i < data.size(); ++i) {
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(data[i])) << (8 * i);
    }
    return number;
}

std::string withBackslashes(const char* path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

constexpr const char* kHives[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE",
                                  "HKEY_USERS"};

bool isHive(const char* place) {
    return place != nullptr && std::any_of(std::begin(kHives), std::end(kHives),
                                           [&](const char* hive) { return std::string_view(hive) == place; });
}

}  // namespace

std::vector<std::string_view> RegistryLookup::places() {
    return {std::begin(kHives), std::end(kHives)};
}

int registryValueToText(const SystemRegistryValue& value, char* buffer, int size) {
    if (isText(value.type)) {
        OUtils::copyText(buffer, value.data.c_str(), size);
    } else if (value.type == kBinary) {
        OUtils::copyText(buffer, hexadecimalPairs(value.data).c_str(), size);
    } else if (value.type == kDoubleWord) {
        const std::string digits = OUtils::formatText("%x", static_cast<unsigned>(doubleWord(value.data)));
        OUtils::copyText(buffer, digits.c_str(), std::min(size, 17));
    } else {
        return -1;
    }
    return 0;
}

int RegistryLookup::readValue(const char* place, const std::string& key, const char* valueName, char* buffer,
                              int size) {
    const auto value =
        system_.readRegistryValue(place == nullptr ? "" : place, key, valueName == nullptr ? "" : valueName);
    if (!value || storedBytes(*value) > static_cast<std::int64_t>(size) * 2) {
        return -1;
    }
    return registryValueToText(*value, buffer, size);
}

// Replaces one wildcard after the other, from the front, by the names of the subkeys that it stands for.
// Names that were put in aren't looked at again, also where they hold a `*`.
bool RegistryLookup::resolve(const char* place, const std::string& pattern,
                             std::vector<std::string>& outKeys) {
    outKeys.assign(1, "");
    std::size_t done = 0;
    for (std::size_t star = pattern.find('*'); star != std::string::npos; star = pattern.find('*', done)) {
        const std::size_t separator = pattern.rfind('\\', star);
        const std::size_t segment = separator == std::string::npos || separator < done ? done : separator + 1;
        const std::size_t end = std::min(pattern.find('\\', star), pattern.size());
        const std::string ahead = pattern.substr(done, segment - done);
        const std::string prefix = pattern.substr(segment, star - segment);
        std::vector<std::string> resolved;
        for (const std::string& key : outKeys) {
            std::string parent = key + ahead;
            const auto names = system_.listRegistryKeys(place == nullptr ? "" : place,
                                                        parent.substr(0, parent.find_last_not_of('\\') + 1));
            if (!names) {
                continue;
            }
            for (const std::string& name : *names) {
                if (name.compare(0, prefix.size(), prefix) == 0) {
                    resolved.push_back(parent + name);
                }
            }
            if (resolved.size() > kKeyLimit) {
                return false;
            }
        }
        outKeys = std::move(resolved);
        done = end;
    }
    for (std::string& key : outKeys) {
        key += pattern.substr(done);
    }
    return true;
}

int RegistryLookup::lookUp(const RegistryQuery& query, char* buffer, int size) {
    if (!isHive(query.place) || query.key == nullptr || buffer == nullptr || size < 1) {
        return -1;
    }
    const std::string key = withBackslashes(query.key);
    if (key.find('*') == std::string::npos) {
        return readValue(query.place, key, query.valueName, buffer, size);
    }
    if (query.preferredKey != nullptr && *query.preferredKey != '\0' &&
        readValue(query.place, withBackslashes(query.preferredKey), query.valueName, buffer, size) == 0) {
        return 0;
    }
    std::vector<std::string> keys;
    if (!resolve(query.place, key, keys)) {
        return -1;
    }
    for (const std::string& candidate : keys) {
        if (readValue(query.place, candidate, query.valueName, buffer, size) == 0) {
            return 0;
        }
    }
    return -1;
}
