#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registry.h"

struct SystemRegistryValue;

// The root that one of the four hive names stands for, exactly as the description writes it.
std::optional<platform::RegistryRoot> registryRootOf(const char* place);

// Reading the registry for the look-ups of the description. Both: false when the place has another name or
// there is no such key or value.
bool readRegistryValue(platform::Registry& registry, const char* place, const char* path,
                       const char* valueName, SystemRegistryValue& outValue);
bool listRegistryKeys(platform::Registry& registry, const char* place, const char* path,
                      std::vector<std::string>& outNames);
