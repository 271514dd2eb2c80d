#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The store of keys and named values: the registry on Windows, an SQLite database on Linux. Names and paths
// ignore case (on Linux that of ASCII letters) and are UTF-8; key paths are separated by `\`. Names keep the
// spelling of their creation.
namespace platform {

enum class RegistryRoot { kClassesRoot, kCurrentUser, kLocalMachine, kUsers };

// The two views of a 64-bit system; the Linux store keeps them apart as well.
enum class RegistryView { kNative, k32Bit };

// The numbers are those of Windows; other numbers may be met in `RegistryValue::type`.
enum RegistryType : std::uint32_t {
    kRegNone = 0,
    kRegString = 1,
    kRegExpandString = 2,
    kRegBinary = 3,
    kRegDword = 4,
    kRegMultiString = 7,
    kRegQword = 11,
};

// The statuses that callers distinguish, as Windows numbers them; there are others.
enum RegistryStatus : int {
    kRegOk = 0,
    kRegNotFound = 2,
    kRegAccessDenied = 5,  // also: the key to delete has subkeys
    kRegBadArgument = 87,
    kRegDiskFull = 112,
    kRegBusy = 170,       // another process holds the store for too long
    kRegDamaged = 1015,   // the store's file can't be made sense of
    kRegIoFailed = 1016,  // the disk fails
    kRegForeign = 1017,   // the store's file belongs to something else, or to a later version
};

struct RegistryValue {
    std::uint32_t type = kRegString;
    // Texts as UTF-8 without terminators at the end; a double word as 4 bytes, little-endian; others raw.
    std::string data;
};

// Each operation opens what it needs and closes it again. Usable by several processes; changes are durable
// when the call returns. Keys are addressed by root, path and view.
class Registry {
public:
    virtual ~Registry() = default;

    // Creates the missing levels. `outCreated` is the number of levels that didn't exist (also on failure).
    virtual int createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) = 0;
    // kRegOk when the key exists and may be read.
    virtual int testKey(RegistryRoot root, std::string_view path, RegistryView view) = 0;
    // Deletes one key without subkeys.
    virtual int deleteKey(RegistryRoot root, std::string_view path, RegistryView view) = 0;
    // The names of the direct subkeys in the store's order; emptied first.
    virtual int listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                         std::vector<std::string>& outNames) = 0;

    // An empty value name means the key's default value.
    virtual int readValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                          RegistryValue& outValue) = 0;
    // Needs an existing key.
    virtual int writeValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                           const RegistryValue& value) = 0;
    virtual int deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                            std::string_view name) = 0;
    virtual int listValues(RegistryRoot root, std::string_view path, RegistryView view,
                           std::vector<std::string>& outNames) = 0;
};

// The machine's registry. On Linux the database in $TANDREL_STATE_DIR, else /var/lib/tandrel, opened (and
// made) at the first use.
Registry& systemRegistry();

}  // namespace platform
