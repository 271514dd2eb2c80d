#pragma once

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

// Reads a desktop entry as a desktop does, and fails the present test where the text breaks the format's
// rules.
class DesktopEntryReader {
public:
    explicit DesktopEntryReader(const std::string& text) {
        EXPECT_TRUE(text.empty() || text.back() == '\n') << "the last line has no end";
        std::istringstream lines(text);
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(line, "[Desktop Entry]");
        while (std::getline(lines, line)) {
            addLine(line);
        }
        EXPECT_EQ(value("Version"), "1.5");
        EXPECT_NE(value("Name"), "");
        const std::string type = value("Type");
        EXPECT_TRUE(type == "Application" || type == "Link") << type;
        EXPECT_EQ(values_.count("Exec") != 0, type == "Application");
        EXPECT_EQ(values_.count("URL") != 0, type == "Link");
    }

    bool has(const std::string& key) const { return values_.count(key) != 0; }
    // Without its escapes; empty when there is none.
    std::string value(const std::string& key) const {
        const auto found = values_.find(key);
        return found == values_.end() ? std::string() : found->second;
    }

    // The words that Exec starts. A field code fails the test: ours has none.
    std::vector<std::string> command() const {
        std::vector<std::string> words;
        const std::string text = value("Exec");
        std::size_t at = 0;
        while (at < text.size()) {
            words.push_back(text[at] == '"' ? quotedWord(text, at) : plainWord(text, at));
            if (at < text.size()) {
                EXPECT_EQ(text[at], ' ');
                ++at;
            }
        }
        return words;
    }

private:
    void addLine(const std::string& line) {
        const std::size_t equals = line.find('=');
        ASSERT_NE(equals, std::string::npos) << line;
        const std::string key = line.substr(0, equals);
        EXPECT_EQ(key.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-"),
                  std::string::npos)
            << line;
        EXPECT_TRUE(values_.emplace(key, withoutEscapes(line.substr(equals + 1))).second)
            << "twice: " << line;
    }

    static std::string withoutEscapes(const std::string& text) {
        static const std::map<char, char> kEscapes = {
            {'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
        EXPECT_FALSE(text.starts_with(' ')) << "a desktop drops this blank: " << text;
        std::string plain;
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] != '\\') {
                plain += text[at];
                continue;
            }
            ++at;
            const auto escape = at < text.size() ? kEscapes.find(text[at]) : kEscapes.end();
            EXPECT_NE(escape, kEscapes.end()) << text;
            plain += escape == kEscapes.end() ? '?' : escape->second;
        }
        return plain;
    }

    static char percentSign(const std::string& text, std::size_t& at) {
        ++at;
        EXPECT_TRUE(at < text.size() && text[at] == '%') << "field code in " << text;
        return '%';
    }

    static std::string quotedWord(const std::string& text, std::size_t& at) {
        std::string word;
        for (++at; at < text.size() && text[at] != '"'; ++at) {
            if (text[at] == '%') {
                word += percentSign(text, at);
                continue;
            }
            if (text[at] == '\\') {
                ++at;
                EXPECT_NE(std::string("\"`$\\").find(text[at]), std::string::npos) << text;
            } else {
                EXPECT_EQ(std::string("`$").find(text[at]), std::string::npos) << text;
            }
            word += text[at];
        }
        EXPECT_LT(at, text.size()) << "open quote in " << text;
        ++at;
        return word;
    }

    static std::string plainWord(const std::string& text, std::size_t& at) {
        std::string word;
        for (; at < text.size() && text[at] != ' '; ++at) {
            EXPECT_EQ(std::string("\t\n\"'\\><~|&;$*?#()`").find(text[at]), std::string::npos) << text;
            word += text[at] == '%' ? percentSign(text, at) : text[at];
        }
        return word;
    }

    std::map<std::string, std::string> values_;
};
