#include "platform/posix/sqlite_registry.h"

#include <algorithm>

#include "base/text_functions.h"
#include "platform/posix/registry_database.h"
#include "platform/posix/registry_schema.h"
#include "platform/posix/state_directory.h"

namespace platform {

namespace {

using registry_schema::rootId;

// Splits a key path. Empty components don't count. False for what the registry can't hold.
bool splitKeyPath(std::string_view path, std::vector<std::string_view>& outNames) {
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('\\'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name.size() > registry_schema::kMaxKeyNameBytes) {
            return false;
        }
        if (!name.empty()) {
            outNames.push_back(name);
        }
    }
    return outNames.size() <= registry_schema::kMaxLevels;
}

bool isValueName(std::string_view name) {
    return name.size() <= registry_schema::kMaxValueNameBytes;
}

// Goes down from `root` as far as the keys exist. `outKey` is the deepest key met, `outFound` the number of
// names that led there.
int descend(RegistryDatabase& database, std::int64_t root, const std::vector<std::string_view>& names,
            std::int64_t& outKey, std::size_t& outFound) {
    outKey = root;
    outFound = 0;
    RegistryStatement query;
    int status = database.prepare("SELECT id FROM keys WHERE parent = ? AND folded = ?", query);
    while (status == kRegOk && outFound < names.size()) {
        const std::string folded = OUtils::toLowerAscii(names[outFound]);
        query.reset();
        status = query.bind(outKey).bind(folded).step();
        if (status == kRegOk) {
            outKey = query.number(0);
            ++outFound;
        }
    }
    return status == kRegNotFound ? kRegOk : status;
}

int findKey(RegistryDatabase& database, std::int64_t root, const std::vector<std::string_view>& names,
            std::int64_t& outKey) {
    std::size_t found = 0;
    const int status = descend(database, root, names, outKey, found);
    return status == kRegOk && found < names.size() ? kRegNotFound : status;
}

// Runs a statement on one key and the folded name of a value.
int runOnValue(RegistryDatabase& database, const char* query, std::int64_t key, std::string_view name,
               RegistryStatement& outStatement, bool isChange) {
    const std::string folded = OUtils::toLowerAscii(name);
    const int status = database.prepare(query, outStatement);
    if (status != kRegOk) {
        return status;
    }
    outStatement.bind(key).bind(folded);
    return isChange ? outStatement.run() : outStatement.step();
}

int hasSubkeys(RegistryDatabase& database, std::int64_t key, bool& outHas) {
    RegistryStatement query;
    int status = database.prepare("SELECT 1 FROM keys WHERE parent = ? LIMIT 1", query);
    if (status == kRegOk) {
        status = query.bind(key).step();
    }
    outHas = status == kRegOk;
    return status == kRegNotFound ? kRegOk : status;
}

int runOnKey(RegistryDatabase& database, const char* query, std::int64_t key) {
    RegistryStatement statement;
    const int status = database.prepare(query, statement);
    return status == kRegOk ? statement.bind(key).run() : status;
}

int insertKeys(RegistryDatabase& database, std::int64_t parent, const std::vector<std::string_view>& names,
               std::size_t first) {
    RegistryStatement insert;
    int status = database.prepare("INSERT INTO keys(parent, folded, name) VALUES(?, ?, ?)", insert);
    for (std::size_t i = first; status == kRegOk && i < names.size(); ++i) {
        const std::string folded = OUtils::toLowerAscii(names[i]);
        insert.reset();
        status = insert.bind(parent).bind(folded).bind(names[i]).run();
        parent = database.lastInsertedId();
    }
    return status;
}

}  // namespace

SqliteRegistry::SqliteRegistry(std::string directory)
    : directory_(std::move(directory)), file_(directory_ + "/registry.db") {}

int SqliteRegistry::createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) {
    outCreated = 0;
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names)) {
        return kRegBadArgument;
    }
    RegistryDatabase database;
    std::int64_t key = 0;
    std::size_t found = 0;
    int status = database.openForChange(directory_, file_);
    if (status == kRegOk) {
        status = descend(database, rootId(root, view), names, key, found);
    }
    if (status == kRegOk) {
        status = insertKeys(database, key, names, found);
    }
    if (status == kRegOk) {
        status = database.commit();
    }
    if (status == kRegOk) {
        outCreated = static_cast<int>(names.size() - found);
    }
    return status;
}

int SqliteRegistry::testKey(RegistryRoot root, std::string_view path, RegistryView view) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names)) {
        return kRegBadArgument;
    }
    if (names.empty()) {
        return kRegOk;
    }
    RegistryDatabase database;
    std::int64_t key = 0;
    const int status = database.openExisting(file_);
    return status == kRegOk ? findKey(database, rootId(root, view), names, key) : status;
}

int SqliteRegistry::deleteKey(RegistryRoot root, std::string_view path, RegistryView view) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names)) {
        return kRegBadArgument;
    }
    if (names.empty()) {
        return kRegAccessDenied;
    }
    // Looked for first, so that deleting from a registry that doesn't exist creates none.
    int status = testKey(root, path, view);
    RegistryDatabase database;
    std::int64_t key = 0;
    bool occupied = false;
    if (status == kRegOk) {
        status = database.openForChange(directory_, file_);
    }
    if (status == kRegOk) {
        status = findKey(database, rootId(root, view), names, key);
    }
    if (status == kRegOk) {
        status = hasSubkeys(database, key, occupied);
    }
    if (status == kRegOk && occupied) {
        status = kRegAccessDenied;
    }
    if (status == kRegOk) {
        status = runOnKey(database, "DELETE FROM entries WHERE key = ?", key);
    }
    if (status == kRegOk) {
        status = runOnKey(database, "DELETE FROM keys WHERE id = ?", key);
    }
    return status == kRegOk ? database.commit() : status;
}

int SqliteRegistry::listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                             std::vector<std::string>& outNames) {
    return listNames(root, path, view, "SELECT name FROM keys WHERE parent = ? ORDER BY folded", outNames);
}

int SqliteRegistry::listValues(RegistryRoot root, std::string_view path, RegistryView view,
                               std::vector<std::string>& outNames) {
    return listNames(root, path, view, "SELECT name FROM entries WHERE key = ? ORDER BY id", outNames);
}

int SqliteRegistry::listNames(RegistryRoot root, std::string_view path, RegistryView view, const char* query,
                              std::vector<std::string>& outNames) {
    outNames.clear();
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names)) {
        return kRegBadArgument;
    }
    RegistryDatabase database;
    std::int64_t key = 0;
    int status = database.openExisting(file_);
    if (status == kRegNotFound && names.empty()) {
        return kRegOk;
    }
    if (status == kRegOk) {
        status = findKey(database, rootId(root, view), names, key);
    }
    RegistryStatement statement;
    if (status == kRegOk) {
        status = database.prepare(query, statement);
    }
    if (status != kRegOk) {
        return status;
    }
    statement.bind(key);
    while ((status = statement.step()) == kRegOk) {
        outNames.push_back(statement.bytes(0));
    }
    return status == kRegNotFound ? kRegOk : status;
}

int SqliteRegistry::readValue(RegistryRoot root, std::string_view path, RegistryView view,
                              std::string_view name, RegistryValue& outValue) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names) || !isValueName(name)) {
        return kRegBadArgument;
    }
    RegistryDatabase database;
    RegistryStatement statement;
    std::int64_t key = 0;
    int status = database.openExisting(file_);
    if (status == kRegOk) {
        status = findKey(database, rootId(root, view), names, key);
    }
    if (status == kRegOk) {
        status = runOnValue(database, "SELECT type, data FROM entries WHERE key = ? AND folded = ?", key,
                            name, statement, false);
    }
    if (status == kRegOk) {
        outValue.type = static_cast<std::uint32_t>(statement.number(0));
        outValue.data = statement.bytes(1);
    }
    return status;
}

int SqliteRegistry::writeValue(RegistryRoot root, std::string_view path, RegistryView view,
                               std::string_view name, const RegistryValue& value) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names) || !isValueName(name)) {
        return kRegBadArgument;
    }
    // Looked for first, so that a write without its key creates no registry.
    int status = testKey(root, path, view);
    RegistryDatabase database;
    RegistryStatement statement;
    std::int64_t key = 0;
    if (status == kRegOk) {
        status = database.openForChange(directory_, file_);
    }
    if (status == kRegOk) {
        status = findKey(database, rootId(root, view), names, key);
    }
    if (status == kRegOk) {
        status = database.prepare(
            "INSERT INTO entries(key, folded, name, type, data) VALUES(?, ?, ?, ?, ?)"
            " ON CONFLICT(key, folded) DO UPDATE SET type = excluded.type, data = excluded.data",
            statement);
    }
    if (status == kRegOk) {
        const std::string folded = OUtils::toLowerAscii(name);
        statement.bind(key).bind(folded).bind(name);
        status = statement.bind(std::int64_t{value.type}).bind(value.data).run();
    }
    return status == kRegOk ? database.commit() : status;
}

int SqliteRegistry::deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                                std::string_view name) {
    std::vector<std::string_view> names;
    if (!splitKeyPath(path, names) || !isValueName(name)) {
        return kRegBadArgument;
    }
    int status = testKey(root, path, view);
    RegistryDatabase database;
    RegistryStatement statement;
    std::int64_t key = 0;
    if (status == kRegOk) {
        status = database.openForChange(directory_, file_);
    }
    if (status == kRegOk) {
        status = findKey(database, rootId(root, view), names, key);
    }
    if (status == kRegOk) {
        status = runOnValue(database, "DELETE FROM entries WHERE key = ? AND folded = ?", key, name,
                            statement, true);
    }
    if (status == kRegOk && database.changedRows() == 0) {
        return kRegNotFound;
    }
    return status == kRegOk ? database.commit() : status;
}

Registry& systemRegistry() {
    static SqliteRegistry registry(stateDirectory());
    return registry;
}

}  // namespace platform
