#pragma once

#include "engine/removal_journal.h"
#include "platform/registry.h"

// A registry on which a removal can be taken back: what a change replaces is written to the journal first. A
// value that can't be read isn't replaced or deleted. Rights of keys aren't kept.
class JournaledRegistry : public platform::Registry {
public:
    // Both are borrowed: the real one, and a journal that is open.
    JournaledRegistry(platform::Registry& registry, RemovalJournal& journal)
        : registry_(registry), journal_(journal) {}

    int createKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  int& outCreated) override;
    int testKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override {
        return registry_.testKey(root, path, view);
    }
    int deleteKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int listKeys(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                 std::vector<std::string>& outNames) override {
        return registry_.listKeys(root, path, view, outNames);
    }
    int readValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  std::string_view name, platform::RegistryValue& outValue) override {
        return registry_.readValue(root, path, view, name, outValue);
    }
    int writeValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::string_view name, const platform::RegistryValue& value) override;
    int deleteValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                    std::string_view name) override;
    int listValues(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::vector<std::string>& outNames) override {
        return registry_.listValues(root, path, view, outNames);
    }

private:
    template <typename Call>
    int change(RemovalRecord& record, Call call);
    std::string spelledLikeInParent(platform::RegistryRoot root, std::string_view path,
                                    platform::RegistryView view);
    int keepValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  std::string_view name, RemovalRecord& record);

    platform::Registry& registry_;
    RemovalJournal& journal_;
};
