#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// The texts by which a change is taken back: fields of a record of the action log, behind its tag. The reader
// of a record drops the white space at its line's end and takes neighbouring separators for one.
namespace UndoText {

// The fields with one separator between each two.
std::string of(std::initializer_list<std::string_view> fields);

// True when a record gives the text back as one of its fields: it isn't empty, holds neither separators nor
// line breaks, and doesn't end with white space, since the fields behind it may be empty.
bool isField(std::string_view text);
// The same for the last field, which may be empty.
bool isLastField(std::string_view text);
// True when the record isn't cut.
bool fitsRecord(std::string_view tag, std::string_view undo);

// At most `count` fields, as the reader of a record sees them; the last takes the rest with all it holds.
// The views look into `undo`, of which null counts as empty.
std::vector<std::string_view> split(const char* undo, std::size_t count);

}  // namespace UndoText
