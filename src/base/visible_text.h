#pragma once

#include <string>
#include <string_view>

namespace OUtils {

// The text as it may be shown to a person, whoever wrote it: nothing in it moves the cursor, changes the
// terminal's state or turns the reading direction. Each control character (also DEL and U+0080 to U+009F),
// each mark, embedding, override and isolate of a direction, each line or paragraph separator and each byte
// that isn't UTF-8 becomes `?`. A line feed, a carriage return directly before one, and a TAB stay.
std::string visibleText(std::string_view text);

// The same on one line: line feeds, carriage returns and TABs become `?`, too.
std::string visibleLine(std::string_view text);

}  // namespace OUtils
