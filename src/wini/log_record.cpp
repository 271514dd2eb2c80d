#include "wini/log_record.h"

#include "base/text_functions.h"
#include "engine/action_log_format.h"

bool logRecordHolds(std::string_view front, std::string_view text) {
    const bool splits = text.find_first_of("\t\r\n") != std::string_view::npos;
    // Records are read without the white space at their ends.
    const bool loses = !text.empty() && OUtils::isWhiteSpace(text.back());
    return !splits && !loses && front.size() + text.size() <= ActionLogFormat::kLineLimit;
}
