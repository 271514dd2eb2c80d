#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class SystemOperations;
struct SystemRegistryValue;

// One lookup, as a default value of the description asks for it. Keys are separated by `/` or `\`.
struct RegistryQuery {
    std::string_view place;         // one of the four names of hives
    std::string_view key;           // may hold `*` at the end of path segments
    std::string_view valueName;     // empty: the key's default value
    std::string_view preferredKey;  // empty: none; tried first when `key` holds a `*`
};

// Finds values of the registry under keys of which only the beginning of a segment may be known.
class RegistryLookup {
public:
    // A lookup that meets more keys than this at once fails.
    static constexpr std::size_t kKeyLimit = 65536;
    static constexpr std::size_t kTextLimit = 8191;
    static constexpr std::int64_t kStoredLimit = 16384;

    explicit RegistryLookup(SystemOperations& system) : system_(system) {}

    // The value as text of at most kTextLimit bytes: texts as they are, binary values as pairs of hexadecimal
    // digits, double words as hexadecimal digits without leading zeros. Nothing when there is no such value,
    // it is of another type, or it takes more than kStoredLimit bytes in the registry. Subkeys are tried in
    // the order in which the system lists them; the beginning of a segment compares exactly.
    std::optional<std::string> lookUp(const RegistryQuery& query);

private:
    std::optional<std::string> readValue(const RegistryQuery& query, const std::string& key);
    bool resolve(std::string_view place, const std::string& pattern, std::vector<std::string>& outKeys);

    SystemOperations& system_;
};

// The conversion that lookUp ends with, cut to `limit` bytes. Nothing for other types.
std::optional<std::string> registryValueToText(const SystemRegistryValue& value, std::size_t limit);
