#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// What became of a change that has a record.
struct RecordedResult {
    bool done = false;
    // The fields of the record, by which the change is taken back; also filled when only the writing failed.
    // Empty when nothing was tried.
    std::string undo;
};

// The fields of a record of the action log. The reader of a record drops the white space at the end of its
// line and takes neighbouring separators for one.
namespace RecordText {

// The fields with one separator between each two.
std::string join(std::initializer_list<std::string_view> fields);

// Whether a reader of the record gets this text back as one of its fields: it isn't empty, holds neither
// separators nor line breaks, and doesn't end with white space, since the fields after it may be empty.
bool isField(std::string_view text);
// The same for the last field, which may be empty.
bool isLastField(std::string_view text);
// Whether the record is written whole; the log cuts longer ones.
bool fits(std::string_view tag, std::string_view fields);

// Whether a record of a file holds this path. A file whose path it can't hold would stay for good.
bool fitsFile(std::string_view path);

// At most `count` fields as the reader of a record sees them; the last one takes the rest with all it holds.
// The views look into `fields`.
std::vector<std::string_view> split(std::string_view fields, std::size_t count);
// All fields between single separators, empty ones included; none for an empty text.
std::vector<std::string_view> splitAll(std::string_view fields);

}  // namespace RecordText
