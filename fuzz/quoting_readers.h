#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz_target.h"

// Small readers of what is quoted for others, by the rules of those who read it. What breaks the rules is a
// finding.

// Cuts `start` off the text if it begins with that.
inline bool takeStart(std::string_view& text, std::string_view start) {
    const bool isThere = text.starts_with(start);
    text.remove_prefix(isThere ? start.size() : 0);
    return isThere;
}

// A script for a Bourne shell that sets variables and adds to PATH, and does nothing else.
class ShellScript {
public:
    explicit ShellScript(std::string_view script) {
        if (takeStart(script, "# ")) {
            script.remove_prefix(script.find('\n') + 1);
        }
        while (!script.empty()) {
            if (takeStart(script, "case \":${PATH-}:\" in\n*:")) {
                readDirectory(script);
            } else if (!takeStart(script, "export PATH\n")) {
                readExport(script);
            }
        }
    }

    const std::vector<std::pair<std::string, std::string>>& exports() const { return exports_; }
    const std::vector<std::string>& directories() const { return directories_; }

private:
    void readExport(std::string_view& script) {
        require(takeStart(script, "export "));
        const std::string name(script.substr(0, script.find('=')));
        require(!name.empty() && name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                                        "0123456789_") == std::string::npos);
        require(name.front() < '0' || name.front() > '9');
        script.remove_prefix(name.size() + 1);
        exports_.emplace_back(name, readQuoted(script));
        require(takeStart(script, "\n"));
    }

    // The test whether the directory is there already, and the line that adds it.
    void readDirectory(std::string_view& script) {
        directories_.push_back(readQuoted(script));
        require(takeStart(script, ":*) ;;\n*) PATH=\"${PATH:+${PATH}:}\""));
        require(readQuoted(script) == directories_.back());
        require(takeStart(script, " ;;\nesac\n"));
    }

    // One word of texts in single quotes, in which nothing means anything, and of escaped characters.
    static std::string readQuoted(std::string_view& script) {
        std::string word;
        require(script.starts_with('\''));
        while (script.starts_with('\'') || script.starts_with('\\')) {
            const bool isQuoted = script.front() == '\'';
            script.remove_prefix(1);
            require(!script.empty());
            const std::size_t length = isQuoted ? script.find('\'') : 1;
            require(length != std::string_view::npos && (isQuoted || script.front() != '\n'));
            word += script.substr(0, length);
            script.remove_prefix(length + (isQuoted ? 1 : 0));
        }
        return word;
    }

    std::vector<std::pair<std::string, std::string>> exports_;
    std::vector<std::string> directories_;
};

// A desktop entry of one group.
class DesktopEntry {
public:
    explicit DesktopEntry(std::string_view text) {
        require(takeStart(text, "[Desktop Entry]\n"));
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            require(end != std::string_view::npos);
            readLine(text.substr(0, end));
            text.remove_prefix(end + 1);
        }
    }

    // Without its escapes; empty when there is none.
    std::string value(const std::string& key) const {
        const auto found = values_.find(key);
        return found == values_.end() ? "" : found->second;
    }

    // The words that Exec starts. A field code is a finding: ours has none.
    std::vector<std::string> command() const {
        std::vector<std::string> words;
        const std::string exec = value("Exec");
        std::string_view rest = exec;
        do {
            words.push_back(rest.starts_with('"') ? readQuotedWord(rest) : readPlainWord(rest));
        } while (takeStart(rest, " "));
        require(rest.empty());
        return words;
    }

private:
    void readLine(std::string_view line) {
        const std::size_t equals = line.find('=');
        require(equals != std::string_view::npos && equals > 0);
        const std::string key(line.substr(0, equals));
        line.remove_prefix(equals + 1);
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        require(values_.emplace(key, unescaped(line)).second);
    }

    static std::string unescaped(std::string_view text) {
        static const std::map<char, char> kEscapes = {
            {'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
        std::string value;
        while (!text.empty()) {
            if (takeStart(text, "\\")) {
                require(!text.empty() && kEscapes.contains(text.front()));
                value += kEscapes.at(text.front());
            } else {
                value += text.front();
            }
            text.remove_prefix(1);
        }
        return value;
    }

    static void addCharacter(std::string_view& rest, std::string& word) {
        const char c = rest.front();
        rest.remove_prefix(1);
        require(c != '%' || takeStart(rest, "%"));
        word += c;
    }

    static std::string readQuotedWord(std::string_view& rest) {
        constexpr std::string_view kEscaped = "\"`$\\";
        std::string word;
        rest.remove_prefix(1);
        while (!takeStart(rest, "\"")) {
            require(!rest.empty());
            const bool isEscaped = takeStart(rest, "\\");
            require(!rest.empty() && isEscaped == (kEscaped.find(rest.front()) != std::string_view::npos));
            addCharacter(rest, word);
        }
        return word;
    }

    static std::string readPlainWord(std::string_view& rest) {
        constexpr std::string_view kReserved = "\t\n\r\"'\\><~|&;$*?#()`";
        std::string word;
        while (!rest.empty() && rest.front() != ' ') {
            require(kReserved.find(rest.front()) == std::string_view::npos);
            addCharacter(rest, word);
        }
        require(!word.empty());
        return word;
    }

    std::map<std::string, std::string> values_;
};
