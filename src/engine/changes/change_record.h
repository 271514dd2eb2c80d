#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

class ActionLogWriter;

// Why a change wasn't made whose record couldn't be written.
inline constexpr std::string_view kUnrecordedReason = "the action log can't take its record";

// The records of one change. They are in the log before the change is made, so that a run that is killed in
// the middle of it can be taken back, and out of it again when the change turns out not to have been made.
class ChangeRecord {
public:
    // The log is borrowed. Without one nothing is recorded: who asked for the change keeps what takes it
    // back.
    explicit ChangeRecord(ActionLogWriter* log);

    // Adds a record, as ActionLogWriter::writeRecord. False when the log can't take it: then the change must
    // not be made, and nothing of it is in the log.
    bool write(std::string_view tag, std::initializer_list<std::string_view> fields,
               std::string_view former = {});
    // The same, and the record is on the disk when this returns: for one that holds the only copy of a former
    // value.
    bool keep(std::string_view tag, std::initializer_list<std::string_view> fields);
    // The change was not made: takes the records out.
    void withdraw();

private:
    bool orWithdraw(bool isWritten);

    ActionLogWriter* log_;
    std::int64_t start_;
};
