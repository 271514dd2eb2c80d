#include "engine/record_reader.h"

#include "engine/action_log_format.h"

RecordReader::RecordReader(PStream& log, std::int64_t start) : lines_(log), failed_(!lines_.moveTo(start)) {}

bool RecordReader::next() {
    former_.clear();
    bool isThere = readLine();
    if (isThere && firstLogField(line()) == ActionLogFormat::kFormer) {
        former_ = nextLogField(line());
        isThere = readLine();
    }
    return isThere;
}

// What doesn't fit the buffer is a piece of a long line. A shorter one without a line feed ends the log.
bool RecordReader::readLine() {
    if (isTorn_ || !lines_.readLine(line_, ActionLogFormat::kRecordLineBuffer)) {
        return false;
    }
    isTorn_ = !line_.ends_with('\n') && line_.size() + 1 < ActionLogFormat::kRecordLineBuffer;
    return !isTorn_;
}
