#pragma once

#include <string>
#include <string_view>
#include <vector>

// These functions read a document that is shown as it is written: nothing in it is markup. It ends at its
// first zero byte; a leading byte order mark is dropped. Every such document can be shown.

// Its lines, without their ends, as valid UTF-8 with U+FFFD for each byte that isn't. LF, CR LF, CR and form
// feed end a line; what follows the last end is a line unless it is empty. TABs become blanks up to the next
// multiple of 8 columns. The time is linear in the document.
std::vector<std::string> verbatimLines(std::string_view document);

// The lines with a line feed after each, for a console of `columns` cells, two of which stay free. A line
// that is wider is broken at its blanks, which are dropped there; all its parts are set in like its
// beginning, or not at all if that would take more than half of the width. A word that is too long for a line
// is broken where the line is full. Only a character that is wider than the console sticks out.
std::string verbatimAsText(std::string_view document, int columns);
