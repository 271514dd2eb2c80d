#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

class PFileConsole;

// A variable as the log holds it.
struct LoggedVariable {
    std::string name;
    std::string value;
};

// The lines of a variable block, each cut at `lineLimit` bytes, and then its line end.
std::vector<std::string> variableBlockLines(const std::vector<LoggedVariable>& variables,
                                            std::size_t lineLimit);

// Writes an action log line by line through a file console, unbuffered: a record is handed to the system
// before the change is made. What can't be written whole is taken out again, so that nobody takes a part of a
// record for another one.
class ActionLogWriter {
public:
    // The console is the session's and outlives this object.
    explicit ActionLogWriter(PFileConsole& console) : console_(console) {}

    // Begins a log at a name in a directory that others can write to: the file is for this user alone. False
    // when there is something of that name, or the system refuses.
    bool openNew(std::string_view path);
    // Continues a published log, at its end; a last line that was written in part goes. False when the system
    // refuses.
    bool openToAppend(std::string_view path);
    // Without an open log records are dropped.
    bool isOpen() const;
    // Brings the log to the disk, where the loss of power leaves it. False when the system refuses.
    bool flush();
    // False when anything written since the opening didn't reach the file.
    bool close();
    bool hasFailed() const;
    // Why it couldn't be opened, or the first of what is above: the system's error number, 0 or -1.
    int failure() const;

    // Lines 1 and 2.
    void writeHeader(std::string_view descriptionPath, std::string_view backupPath);
    // The variable block.
    void writeVariables(const std::vector<LoggedVariable>& variables);

    // Each record, before its change. False when the log can't take it: it is as it was then, and the change
    // must not be made. True without an open log.
    //
    // `created` levels of `directory` don't exist.
    bool writeDirectory(int created, std::string_view directory);
    // `isRestorable`: at the undo the file's former content is put back. `former`: as for writeRecord.
    bool writeFile(bool isRestorable, std::string_view path, std::string_view former = {});
    // Any record: the tag, then each field after a separator. One that was copied before isn't written again,
    // unless its undo has to take place as often as the change did. `former`, when it isn't empty, says what
    // the change replaces: an undo that finds that there leaves it.
    bool writeRecord(std::string_view tag, std::initializer_list<std::string_view> fields,
                     std::string_view former = {});
    // A record of an earlier log, without its line end.
    void copyRecord(std::string_view line);

    // Where the next record goes; negative without an open log.
    std::int64_t position();
    // Takes out the records from such a position on, because their changes were not made.
    void withdrawFrom(std::int64_t position);

private:
    void opened();
    bool writeRecordLines(std::string_view former, const std::string& line);
    bool writeLines(const std::string& lines);

    PFileConsole& console_;
    // The line before this position may be a variable: nothing that looks like another one may follow it.
    std::int64_t headEnd_ = 0;
    bool isBroken_ = false;  // there is a part of a line in it that can't be taken out
    std::unordered_set<std::string> copied_;
};
