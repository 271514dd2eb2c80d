#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/registry_rules.h"

namespace platform {

// What became of a key, or of one value of it. What was made and is gone again is no change.
struct RegistryChange {
    enum class What {
        kCreated,
        kChanged,  // the value's data
        kDeleted,
    };

    What what = What::kCreated;
    RegistryKey key;
    std::optional<std::string> valueName = {};  // none: the key itself
    RegistryValue value = {};                   // that is there now
};

}  // namespace platform

// A registry over another one, the base: what is read comes from the base, what is changed stays in memory.
// On Windows a key that can be reached by two roots (the classes of the machine, the present user) has
// changes only below the root by which they were made. For one thread.
class OverlayRegistry : public platform::Registry {
public:
    // Both are borrowed; the rules are those of the base.
    OverlayRegistry(platform::Registry& base, platform::RegistryRules& rules) : base_(base), rules_(rules) {}

    // What would have to be done to the base: a key before what is in it, and all by root, view and name.
    std::vector<platform::RegistryChange> changes() const;

    int createKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  int& outCreated) override;
    int testKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int deleteKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int listKeys(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                 std::vector<std::string>& outNames) override;
    int readValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  std::string_view name, platform::RegistryValue& outValue) override;
    int writeValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::string_view name, const platform::RegistryValue& value) override;
    int deleteValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                    std::string_view name) override;
    int listValues(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::vector<std::string>& outNames) override;

private:
    struct NamedValue {
        std::string name;
        std::optional<platform::RegistryValue> value;  // none: deleted
        bool isBases = false;                          // the base has a value of this name in this key
    };
    enum class Presence { kBases, kMade, kGone };
    // A key in which something was changed.
    struct Key {
        platform::RegistryKey key;
        std::string name;  // of its last level
        Presence presence = Presence::kBases;
        bool wasThere = false;                          // in the base
        std::map<std::string, NamedValue> values = {};  // by the key of their names
    };
    // A key's levels are parted by zero bytes, so that children follow their parent.
    using Address = std::tuple<platform::RegistryRoot, platform::RegistryView, std::string>;
    // What is asked for: a key, its levels, and where it is kept here.
    struct Target {
        platform::RegistryKey key;
        std::vector<std::string> levels;
        Address address;
    };

    Target targetOf(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) const;
    Target upTo(const Target& target, std::size_t levels) const;
    bool showsBase(const Target& target) const;
    int statusOf(const Target& target);
    int makeLevel(const Target& target);
    Key& changed(const Target& target);
    const Key* find(const Target& target) const;
    bool baseHas(const Target& target, std::string_view valueName);
    static void addValues(const Key& key, std::vector<platform::RegistryChange>& ioChanges);

    platform::Registry& base_;
    platform::RegistryRules& rules_;
    std::map<Address, Key> keys_;
};
