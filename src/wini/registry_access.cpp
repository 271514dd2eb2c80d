#include "wini/registry_access.h"

#include <string_view>

#include "contracts/system_operations.h"

namespace {

struct NamedRoot {
    std::string_view name;
    platform::RegistryRoot root;
};

constexpr NamedRoot kRoots[] = {
    {"HKEY_CLASSES_ROOT", platform::RegistryRoot::kClassesRoot},
    {"HKEY_CURRENT_USER", platform::RegistryRoot::kCurrentUser},
    {"HKEY_LOCAL_MACHINE", platform::RegistryRoot::kLocalMachine},
    {"HKEY_USERS", platform::RegistryRoot::kUsers},
};

}  // namespace

std::optional<platform::RegistryRoot> registryRootOf(const char* place) {
    for (const NamedRoot& entry : kRoots) {
        if (place != nullptr && entry.name == place) {
            return entry.root;
        }
    }
    return std::nullopt;
}

bool readRegistryValue(platform::Registry& registry, const char* place, const char* path,
                       const char* valueName, SystemRegistryValue& outValue) {
    const auto root = registryRootOf(place);
    platform::RegistryValue value;
    if (!root.has_value() || registry.readValue(*root, path, platform::RegistryView::kNative, valueName,
                                                value) != platform::kRegOk) {
        return false;
    }
    outValue = {value.type, std::move(value.data)};
    return true;
}

bool listRegistryKeys(platform::Registry& registry, const char* place, const char* path,
                      std::vector<std::string>& outNames) {
    const auto root = registryRootOf(place);
    return root.has_value() &&
           registry.listKeys(*root, path, platform::RegistryView::kNative, outNames) == platform::kRegOk;
}
