#include "wini/undo_text.h"

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/line_reader.h"

namespace UndoText {

namespace {

constexpr std::string_view kSplitting("\t\r\n\0", 4);

}  // namespace

std::string of(std::initializer_list<std::string_view> fields) {
    std::string undo;
    for (const std::string_view field : fields) {
        undo += field;
        undo += ActionLogFormat::kSeparator;
    }
    undo.pop_back();
    return undo;
}

bool isField(std::string_view text) {
    return !text.empty() && text.find_first_of(kSplitting) == std::string_view::npos &&
           !OUtils::isWhiteSpace(text.back());
}

bool isLastField(std::string_view text) {
    return text.empty() || isField(text);
}

bool fitsRecord(std::string_view tag, std::string_view undo) {
    return tag.size() + 1 + undo.size() <= ActionLogFormat::kLineLimit;
}

std::vector<std::string_view> split(const char* undo, std::size_t count) {
    std::vector<std::string_view> fields;
    std::string_view rest = undo == nullptr ? "" : undo;
    while (!rest.empty() && fields.size() + 1 < count) {
        fields.push_back(firstLogField(rest));
        rest = nextLogField(rest);
    }
    if (!rest.empty()) {
        fields.push_back(rest);
    }
    return fields;
}

}  // namespace UndoText
