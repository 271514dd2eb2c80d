#include "platform/posix/registry_database.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/posix/registry_schema.h"

namespace platform {

namespace {

constexpr int kBusyMilliseconds = 10000;

// The file is data from outside: its schema gets no say beyond the tables. EXTRA also brings the removal of
// the journal to the disk, so that a change that was reported stays.
constexpr const char* kSettings =
    "PRAGMA trusted_schema = OFF;"
    "PRAGMA cell_size_check = ON;"
    "PRAGMA synchronous = EXTRA;";

int statusOfErrno(int error) {
    switch (error) {
        case ENOSPC:
        case EDQUOT:
            return kRegDiskFull;
        case EIO:
            return kRegIoFailed;
        default:
            return kRegAccessDenied;
    }
}

int createDirectories(const std::string& directory) {
    for (std::size_t end = directory.find('/', 1);; end = directory.find('/', end + 1)) {
        const std::string level = directory.substr(0, end);
        if (mkdir(level.c_str(), 0755) != 0 && errno != EEXIST) {
            return statusOfErrno(errno);
        }
        if (end == std::string::npos) {
            return kRegOk;
        }
    }
}

}  // namespace

int registryStatusOf(int sqliteResult) {
    switch (sqliteResult & 0xFF) {
        case SQLITE_OK:
        case SQLITE_ROW:
            return kRegOk;
        case SQLITE_DONE:
            return kRegNotFound;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return kRegBusy;
        case SQLITE_PERM:
        case SQLITE_READONLY:
        case SQLITE_AUTH:
        case SQLITE_CANTOPEN:
            return kRegAccessDenied;
        case SQLITE_FULL:
            return kRegDiskFull;
        case SQLITE_TOOBIG:
            return kRegBadArgument;
        case SQLITE_NOMEM:
        case SQLITE_IOERR:
            return kRegIoFailed;
        // Anything else, an unknown table or column among them, means that the file isn't what it says.
        default:
            return kRegDamaged;
    }
}

int RegistryDatabase::connect(const std::string& file, int extraFlags) {
    sqlite3* connection = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &connection,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | extraFlags, nullptr);
    connection_.reset(connection);
    if (result != SQLITE_OK) {
        return registryStatusOf(result);
    }
    sqlite3_busy_timeout(connection, kBusyMilliseconds);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    return execute(kSettings);
}

// Opened for writing where that is possible, because what a killed process left half done must be undone
// before the file can be read.
int RegistryDatabase::openExisting(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? kRegNotFound : kRegAccessDenied;
    }
    int result = connect(file, 0);
    bool empty = false;
    if (result == kRegOk) {
        // One transaction for all look-ups, so that they see one state.
        result = execute("BEGIN");
    }
    if (result == kRegOk) {
        result = checkFormat(empty);
    }
    return result == kRegOk && empty ? kRegNotFound : result;
}

int RegistryDatabase::openForChange(const std::string& directory, const std::string& file) {
    int result = createDirectories(directory);
    if (result == kRegOk) {
        result = connect(file, SQLITE_OPEN_CREATE);
    }
    if (result == kRegOk) {
        result = execute("BEGIN IMMEDIATE");
    }
    bool empty = false;
    if (result == kRegOk) {
        result = checkFormat(empty);
    }
    return result == kRegOk && empty ? execute(registry_schema::kCreateTables) : result;
}

int RegistryDatabase::commit() {
    return execute("COMMIT");
}

int RegistryDatabase::checkFormat(bool& outEmpty) {
    std::int64_t application = 0;
    std::int64_t version = 0;
    std::int64_t tables = 0;
    int result = readNumber("PRAGMA application_id", application);
    if (result == kRegOk) {
        result = readNumber("PRAGMA user_version", version);
    }
    if (result == kRegOk) {
        result = readNumber("SELECT count(*) FROM sqlite_schema", tables);
    }
    if (result != kRegOk) {
        return result;
    }
    outEmpty = application == 0 && version == 0 && tables == 0;
    const bool ours = application == registry_schema::kApplicationId && version == registry_schema::kVersion;
    return outEmpty || ours ? kRegOk : kRegForeign;
}

int RegistryDatabase::readNumber(const char* query, std::int64_t& outNumber) {
    RegistryStatement statement;
    int result = prepare(query, statement);
    if (result == kRegOk) {
        result = statement.step();
    }
    if (result == kRegOk) {
        outNumber = statement.number(0);
    }
    return result == kRegNotFound ? kRegDamaged : result;
}

int RegistryDatabase::execute(const char* statements) {
    return registryStatusOf(sqlite3_exec(connection_.get(), statements, nullptr, nullptr, nullptr));
}

int RegistryDatabase::prepare(const char* query, RegistryStatement& outStatement) {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(connection_.get(), query, -1, &statement, nullptr);
    outStatement.statement_.reset(statement);
    outStatement.reset();
    return registryStatusOf(result);
}

RegistryStatement& RegistryStatement::bind(std::int64_t number) {
    const int result = sqlite3_bind_int64(statement_.get(), nextParameter_++, number);
    bindResult_ = bindResult_ == SQLITE_OK ? result : bindResult_;
    return *this;
}

RegistryStatement& RegistryStatement::bind(std::string_view bytes) {
    // A null pointer would bind the value NULL instead of an empty blob.
    const void* data = bytes.empty() ? "" : static_cast<const void*>(bytes.data());
    const int result =
        sqlite3_bind_blob64(statement_.get(), nextParameter_++, data, bytes.size(), SQLITE_STATIC);
    bindResult_ = bindResult_ == SQLITE_OK ? result : bindResult_;
    return *this;
}

int RegistryStatement::step() {
    return registryStatusOf(bindResult_ != SQLITE_OK ? bindResult_ : sqlite3_step(statement_.get()));
}

int RegistryStatement::run() {
    const int result = bindResult_ != SQLITE_OK ? bindResult_ : sqlite3_step(statement_.get());
    return result == SQLITE_DONE ? kRegOk : registryStatusOf(result);
}

void RegistryStatement::reset() {
    if (statement_ != nullptr) {
        sqlite3_reset(statement_.get());
    }
    nextParameter_ = 1;
    bindResult_ = SQLITE_OK;
}

std::string RegistryStatement::bytes(int column) {
    const void* data = sqlite3_column_blob(statement_.get(), column);
    const int size = sqlite3_column_bytes(statement_.get(), column);
    return data != nullptr ? std::string(static_cast<const char*>(data), static_cast<std::size_t>(size)) : "";
}

}  // namespace platform
