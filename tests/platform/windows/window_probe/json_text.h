#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// What is needed of JSON to write it, in ASCII.
namespace json {

// Half a character stands as it is, as an escape.
std::string text(std::wstring_view value);
std::string list(const std::vector<std::string>& values);

// Values are JSON already, but for the texts and truth values.
class Object {
public:
    Object& add(std::string_view name, std::string_view value);
    Object& addText(std::string_view name, std::wstring_view value) { return add(name, text(value)); }
    Object& addFlag(std::string_view name, bool value) { return add(name, value ? "true" : "false"); }
    Object& addNumber(std::string_view name, long long value) { return add(name, std::to_string(value)); }
    std::string str() const { return "{" + members_ + "}"; }

private:
    std::string members_;
};

}  // namespace json
