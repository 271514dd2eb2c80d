#pragma once

#include "base/text_functions.h"
#include "platform/memory/memory_registry.h"
#include "platform/registry_rules.h"

// What the registry in memory says to changes. Refusals that a test has asked for one by one aren't foreseen.
class MemoryRegistryRules : public platform::RegistryRules {
public:
    // Borrowed.
    explicit MemoryRegistryRules(const MemoryRegistry& registry) : registry_(registry) {}

    int wouldRefuse(const platform::RegistryKey& key) override {
        return registry_.isReadOnly(key.path) ? platform::kRegAccessDenied : platform::kRegOk;
    }
    platform::RegistryKey canonical(const platform::RegistryKey& key) const override { return key; }
    bool isKeyName(std::string_view) const override { return true; }
    bool isValueName(std::string_view) const override { return true; }
    std::string nameKey(std::string_view name) const override { return OUtils::toLowerAscii(name); }
    int statusOfRootDeletion() const override { return platform::kRegNotFound; }

private:
    const MemoryRegistry& registry_;
};
