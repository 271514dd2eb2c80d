#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

class PFileConsole;

// A variable as the log holds it. The texts are only borrowed.
struct LoggedVariable {
    std::string_view name;
    std::string_view value;
};

// The lines of a variable block, each cut at `lineLimit` bytes, and then its line end.
std::vector<std::string> variableBlockLines(const std::vector<LoggedVariable>& variables,
                                            std::size_t lineLimit);

// Writes an action log line by line through a file console, unbuffered: a record is handed to the system
// before the change is made. A failed write is remembered and doesn't stop the work.
class ActionLogWriter {
public:
    // The console is the session's and outlives this object.
    explicit ActionLogWriter(PFileConsole& console) : console_(console) {}

    // Begins a log at a name in a directory that others can write to: the file is for this user alone. False
    // when there is something of that name, or the system refuses.
    bool openNew(std::string_view path);
    // Continues a published log, at its end. False when the system refuses.
    bool openToAppend(std::string_view path);
    // Without an open log records are dropped.
    bool isOpen() const;
    // False when anything written since the opening didn't reach the file.
    bool close();
    bool hasFailed() const;

    // Lines 1 and 2.
    void writeHeader(std::string_view descriptionPath, std::string_view backupPath);
    // The variable block.
    void writeVariables(const std::vector<LoggedVariable>& variables);
    // `created` levels of `directory` did not exist before.
    void writeDirectory(int created, std::string_view directory);
    // `isRestorable`: at the undo the file's former content is put back.
    void writeFile(bool isRestorable, std::string_view path);
    // Any record: the tag, then each field after a separator. One that was copied before isn't written again,
    // unless its undo has to take place as often as the change did.
    void writeRecord(std::string_view tag, std::initializer_list<std::string_view> fields);
    // A record of an earlier log, without its line end.
    void copyRecord(std::string_view line);

private:
    void opened();
    void writeRecordLine(std::string line);
    void writeLine(std::string line);

    PFileConsole& console_;
    // The line before may be a variable: nothing that looks like another one may follow it.
    bool isAfterVariables_ = false;
    std::unordered_set<std::string> copied_;
};
