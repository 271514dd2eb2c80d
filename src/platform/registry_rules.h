#pragma once

#include <string>
#include <string_view>

#include "platform/registry.h"

// What a machine's registry says to a change that isn't made, and which names mean one thing. For whoever
// imitates the registry.
namespace platform {

struct RegistryKey {
    RegistryRoot root = RegistryRoot::kLocalMachine;
    std::string path;
    RegistryView view = RegistryView::kNative;
};

class RegistryRules {
public:
    virtual ~RegistryRules() = default;

    // 0, or the status with which the machine would refuse to make, change or delete this key or its values.
    // Nothing is changed for that.
    virtual int wouldRefuse(const RegistryKey& key) = 0;
    // Where a key has several addresses, the same one for all of them, as far as roots don't overlap.
    virtual RegistryKey canonical(const RegistryKey& key) const = 0;
    // Of one level of a path; of a value.
    virtual bool isKeyName(std::string_view name) const = 0;
    virtual bool isValueName(std::string_view name) const = 0;
    // The same for all spellings of a name.
    virtual std::string nameKey(std::string_view name) const = 0;
    virtual int statusOfRootDeletion() const = 0;
};

// Of the machine itself. One object for the whole process.
RegistryRules& systemRegistryRules();

}  // namespace platform
