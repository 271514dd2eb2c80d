#pragma once

#include <string>

#include "platform/registry.h"

namespace platform {

// The registry in an SQLite database (registry_schema.md). Each operation opens and closes the database, so
// that it needs no lock of its own and notices at once when the file is replaced.
class SqliteRegistry : public Registry {
public:
    // The database is in `directory`. The first change creates it; reading never does.
    explicit SqliteRegistry(std::string directory);

    int createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) override;
    int testKey(RegistryRoot root, std::string_view path, RegistryView view) override;
    int deleteKey(RegistryRoot root, std::string_view path, RegistryView view) override;
    int listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                 std::vector<std::string>& outNames) override;
    int readValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                  RegistryValue& outValue) override;
    int writeValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                   const RegistryValue& value) override;
    int deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                    std::string_view name) override;
    int listValues(RegistryRoot root, std::string_view path, RegistryView view,
                   std::vector<std::string>& outNames) override;

private:
    int listNames(RegistryRoot root, std::string_view path, RegistryView view, const char* query,
                  std::vector<std::string>& outNames);

    const std::string directory_;
    const std::string file_;
};

}  // namespace platform
