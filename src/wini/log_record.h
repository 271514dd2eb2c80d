#pragma once

#include <string_view>

// Whether a line of the action log gives back `text` as it is when it stands behind `front`, the record's tag
// and fields with their separators. What a line can't hold could not be taken away again.
bool logRecordHolds(std::string_view front, std::string_view text);
