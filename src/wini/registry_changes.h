#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {
class Registry;
}

// Changes of the registry that a description asks for, in the native view. `place` is one of the four root
// names; `path` may hold `/` for `\` and has at most kPathLimit bytes. A null argument counts as missing.
// What a record of the action log couldn't name for the undo isn't written: longer paths, paths and names
// with a TAB, a line break or white space at their end, and both together beyond a line.
class RegistryChanges {
public:
    static constexpr std::size_t kPathLimit = 511;  // bytes

    explicit RegistryChanges(platform::Registry& registry) : registry_(registry) {}

    // 0 or the system's error; -1 for a missing argument or another root. `type` is REG_SZ (also when null or
    // empty), REG_DWORD with `data` as a base-16 number, or REG_BINARY with pairs of hexadecimal digits; any
    // other word writes an empty text. `outCreated` is the number of key levels that had to be made; after a
    // failure they are gone again and it is 0.
    int writeRegistryValue(const char* place, const char* path, const char* type, const char* valueName,
                           const char* data, int& outCreated);
    // The number of key levels that were made. 0 when the key existed, and after a failure, which leaves none
    // of them.
    int createRegistryKey(const char* place, const char* path);
    // 0 or the system's error; -1 for a missing argument or another root.
    int deleteRegistryValue(const char* place, const char* path, const char* valueName);
    // Deletes up to `levels` keys from the deepest on, each only without subkeys. How many were deleted; 0
    // for a path of fewer levels.
    int deleteRegistryKeys(const char* place, const char* path, int levels);

private:
    platform::Registry& registry_;
};
