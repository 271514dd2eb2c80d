#pragma once

#include <string>
#include <string_view>
#include <vector>

class SystemOperations;
struct SystemRegistryValue;

// One lookup, as a default value of the description asks for it. Keys are separated by `/` or `\`.
struct RegistryQuery {
    const char* place = nullptr;         // one of the four names of hives
    const char* key = nullptr;           // may hold `*` at the end of path segments
    const char* valueName = nullptr;     // null or empty: the key's default value
    const char* preferredKey = nullptr;  // null or empty: none; tried first when `key` holds a `*`
};

// Finds values of the registry under keys of which only the beginning of a segment may be known.
class RegistryLookup {
public:
    // A lookup that meets more keys than this at once fails.
    static constexpr std::size_t kKeyLimit = 65536;

    // The names of hives that a query may hold.
    static std::vector<std::string_view> places();

    explicit RegistryLookup(SystemOperations& system) : system_(system) {}

    // The value as text into `buffer` of `size` bytes, cut and terminated: texts as they are, binary values
    // as pairs of hexadecimal digits, double words as hexadecimal digits without leading zeros. 0, or -1 when
    // there is no such value, it is of another type, or it takes more than twice `size` bytes in the
    // registry. Subkeys are tried in the order in which the system lists them; the beginning compares
    // exactly.
    int lookUp(const RegistryQuery& query, char* buffer, int size);

private:
    int readValue(const char* place, const std::string& key, const char* valueName, char* buffer, int size);
    bool resolve(const char* place, const std::string& pattern, std::vector<std::string>& outKeys);

    SystemOperations& system_;
};

// The conversion that lookUp ends with. 0 or -1.
int registryValueToText(const SystemRegistryValue& value, char* buffer, int size);
