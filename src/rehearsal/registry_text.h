#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "rehearsal/sectioned_text.h"

struct RegistryEntry {
    platform::RegistryRoot root = platform::RegistryRoot::kLocalMachine;
    platform::RegistryView view = platform::RegistryView::kNative;
    std::string path;
    std::optional<std::string> name;  // nothing: only the key
    platform::RegistryValue value;
};

// Keys and values of the registry as lines of a machine file (machine_format.md).

// Throws InstallerError with the number of the line if it is wrong.
RegistryEntry readRegistryEntry(const NumberedLine& line, platform::RegistryView view);

// "HKLM\path".
std::string registryKeyText(platform::RegistryRoot root, std::string_view path);
// What stands before " = ": the key, and the name of the value.
std::string registryNameText(std::string_view keyText, std::string_view name);
// What follows it: the type, and the data in the form that readRegistryEntry accepts.
std::string registryValueText(const platform::RegistryValue& value);
