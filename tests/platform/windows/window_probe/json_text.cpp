#include "platform/windows/window_probe/json_text.h"

#include <cstdio>

namespace json {

std::string text(std::wstring_view value) {
    std::string result = "\"";
    for (const wchar_t unit : value) {
        if (unit < 0x20 || unit > 0x7E || unit == L'"' || unit == L'\\') {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            result += escape;
        } else {
            result += static_cast<char>(unit);
        }
    }
    return result + "\"";
}

std::string list(const std::vector<std::string>& values) {
    std::string result = "[";
    for (const std::string& value : values) {
        result += result.size() == 1 ? "" : ",";
        result += value;
    }
    return result + "]";
}

Object& Object::add(std::string_view name, std::string_view value) {
    members_ += members_.empty() ? "\"" : ",\"";
    members_ += name;
    members_ += "\":";
    members_ += value;
    return *this;
}

}  // namespace json
