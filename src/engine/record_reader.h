#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/line_reader.h"

// The records of an action log, one after the other, each with the line BEFORE that belongs to it.
class RecordReader {
public:
    // From an offset of the log on. The log outlives this object and isn't used by others meanwhile.
    RecordReader(PStream& log, std::int64_t start);

    // Goes to the next record. False at the end of the log, and after a failed read.
    bool next();
    // Without its line end; good until the next call.
    std::string_view line() const { return withoutTrailingSpace(line_); }
    // The field of its line BEFORE; empty without one.
    std::string_view former() const { return former_; }

    // Whether the log ends in the middle of a line. Its writer was killed, so the change of that record was
    // never made, and the part isn't given: it may look like another record.
    bool isTorn() const { return isTorn_; }
    // Whether the log couldn't be read to its end.
    bool hasFailed() const { return failed_ || lines_.hasFailed(); }

private:
    bool readLine();

    LineReader lines_;
    bool failed_;
    bool isTorn_ = false;
    std::string line_;
    std::string former_;
};
