#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// The few things that the registry asks of SQLite. Each status is a RegistryStatus.
namespace platform {

// The registry's status for a result of the library.
int registryStatusOf(int sqliteResult);

class RegistryStatement;

// One connection, for one thread.
class RegistryDatabase {
public:
    // An existing database. kRegNotFound when there is none or it is still empty.
    int openExisting(const std::string& file);
    // The same, creating directory, file and tables where they are missing; starts the one transaction for
    // the change.
    int openForChange(const std::string& directory, const std::string& file);
    // Makes the change durable. What isn't committed is undone when the connection closes.
    int commit();

    int execute(const char* statements);
    int prepare(const char* query, RegistryStatement& outStatement);
    std::int64_t lastInsertedId() { return sqlite3_last_insert_rowid(connection_.get()); }
    int changedRows() { return sqlite3_changes(connection_.get()); }

private:
    struct Closer {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    };

    int connect(const std::string& file, int extraFlags);
    int checkFormat(bool& outEmpty);
    int readNumber(const char* query, std::int64_t& outNumber);

    std::unique_ptr<sqlite3, Closer> connection_;
};

// A prepared query. Bound texts must live until the last step.
class RegistryStatement {
public:
    RegistryStatement& bind(std::int64_t number);
    RegistryStatement& bind(std::string_view bytes);

    // One row: kRegOk. No row (left): kRegNotFound.
    int step();
    // Runs a statement without rows to its end.
    int run();
    // Ready for the next binding from the first parameter on.
    void reset();

    std::int64_t number(int column) { return sqlite3_column_int64(statement_.get(), column); }
    std::string bytes(int column);

private:
    friend class RegistryDatabase;
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
    int nextParameter_ = 1;
    int bindResult_ = SQLITE_OK;
};

}  // namespace platform
