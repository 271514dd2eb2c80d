#include "engine/changes/record_text.h"

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/line_reader.h"

namespace RecordText {

namespace {

using ActionLogFormat::kSeparator;

constexpr std::string_view kSplitting("\t\r\n\0", 4);

}  // namespace

std::string join(std::initializer_list<std::string_view> fields) {
    std::string text;
    for (const std::string_view field : fields) {
        text += field;
        text += kSeparator;
    }
    text.pop_back();
    return text;
}

bool isField(std::string_view text) {
    return !text.empty() && text.find_first_of(kSplitting) == std::string_view::npos &&
           !OUtils::isWhiteSpace(text.back());
}

bool isLastField(std::string_view text) {
    return text.empty() || isField(text);
}

bool fits(std::string_view tag, std::string_view fields) {
    return tag.size() + 1 + fields.size() <= ActionLogFormat::kLineLimit;
}

bool fitsFile(std::string_view path) {
    static_assert(ActionLogFormat::kOver.size() < ActionLogFormat::kCreate.size());
    return isField(path) && fits(ActionLogFormat::kFile, join({ActionLogFormat::kCreate, path}));
}

std::vector<std::string_view> split(std::string_view fields, std::size_t count) {
    std::vector<std::string_view> result;
    while (!fields.empty() && result.size() + 1 < count) {
        result.push_back(firstLogField(fields));
        fields = nextLogField(fields);
    }
    if (!fields.empty()) {
        result.push_back(fields);
    }
    return result;
}

std::vector<std::string_view> splitAll(std::string_view fields) {
    std::vector<std::string_view> result;
    if (fields.empty()) {
        return result;
    }
    for (std::size_t end = 0; (end = fields.find(kSeparator)) != std::string_view::npos;) {
        result.push_back(fields.substr(0, end));
        fields.remove_prefix(end + 1);
    }
    result.push_back(fields);
    return result;
}

}  // namespace RecordText
