#pragma once

#include <string>

#include "platform/registry.h"

namespace platform {

// The registry in an SQLite database (registry_schema.md). Each operation opens and closes the database, so
// that it needs no lock of its own and notices at once when the file is replaced.
class SqliteRegistry : public Registry {
public:
    // The database lies in `directory` and is made by the first change; reading never makes it.
    explicit SqliteRegistry(std::string directory);

    int createKey(RegistryRoot root, const char* path, RegistryView view, int& outCreated) override;
    int testKey(RegistryRoot root, const char* path, RegistryView view) override;
    int deleteKey(RegistryRoot root, const char* path, RegistryView view) override;
    int listKeys(RegistryRoot root, const char* path, RegistryView view,
                 std::vector<std::string>& outNames) override;
    int readValue(RegistryRoot root, const char* path, RegistryView view, const char* name,
                  RegistryValue& outValue) override;
    int writeValue(RegistryRoot root, const char* path, RegistryView view, const char* name,
                   const RegistryValue& value) override;
    int deleteValue(RegistryRoot root, const char* path, RegistryView view, const char* name) override;
    int listValues(RegistryRoot root, const char* path, RegistryView view,
                   std::vector<std::string>& outNames) override;

private:
    int listNames(RegistryRoot root, const char* path, RegistryView view, const char* query,
                  std::vector<std::string>& outNames);

    const std::string directory_;
    const std::string file_;
};

}  // namespace platform
