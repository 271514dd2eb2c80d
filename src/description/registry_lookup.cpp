#include "description/registry_lookup.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "base/wide_text_converter.h"
#include "contracts/system_operations.h"
#include "description/vocabulary.h"

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

std::string withBackslashes(std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

bool isHive(std::string_view place) {
    return std::ranges::find(vocabulary::kHives, place) != std::end(vocabulary::kHives);
}

std::string hexadecimal(std::uint32_t number) {
    char digits[9];
    return {digits, std::to_chars(digits, std::end(digits), number, 16).ptr};
}

}  // namespace

std::optional<std::string> registryValueToText(const SystemRegistryValue& value, std::size_t limit) {
    if (isText(value.type)) {
        // Only the text before a terminator counts.
        return value.data.substr(0, std::min(limit, value.data.find('\0')));
    }
    if (value.type == kBinary) {
        return hexadecimalPairs(value.data).substr(0, limit);
    }
    if (value.type == kDoubleWord) {
        return hexadecimal(doubleWord(value.data)).substr(0, limit);
    }
    return std::nullopt;
}

std::optional<std::string> RegistryLookup::readValue(const RegistryQuery& query, const std::string& key) {
    const auto value = system_.readRegistryValue(query.place, key, query.valueName);
    if (!value || storedBytes(*value) > kStoredLimit) {
        return std::nullopt;
    }
    return registryValueToText(*value, kTextLimit);
}

// Replaces one wildcard after the other, from the front, by the names of the subkeys that it stands for.
// Names that were put in aren't looked at again, also where they hold a `*`.
bool RegistryLookup::resolve(std::string_view place, const std::string& pattern,
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
            const auto names =
                system_.listRegistryKeys(place, parent.substr(0, parent.find_last_not_of('\\') + 1));
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

std::optional<std::string> RegistryLookup::lookUp(const RegistryQuery& query) {
    if (!isHive(query.place)) {
        return std::nullopt;
    }
    const std::string key = withBackslashes(query.key);
    if (key.find('*') == std::string::npos) {
        return readValue(query, key);
    }
    if (!query.preferredKey.empty()) {
        if (std::optional<std::string> preferred = readValue(query, withBackslashes(query.preferredKey))) {
            return preferred;
        }
    }
    std::vector<std::string> keys;
    if (!resolve(query.place, key, keys)) {
        return std::nullopt;
    }
    for (const std::string& candidate : keys) {
        if (std::optional<std::string> text = readValue(query, candidate)) {
            return text;
        }
    }
    return std::nullopt;
}
