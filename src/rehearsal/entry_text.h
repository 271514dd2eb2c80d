#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

// The texts of a machine file's line (machine_format.md): plain, or between double quotes with escapes.

// The text between quotes. What a person couldn't see, or would be misled by, is escaped.
std::string quotedText(std::string_view text);

// The text as it is if it can stand so in front of `stop`, and at the start of a line; otherwise quoted. An
// empty `stop` stands for the end of the line.
std::string entryText(std::string_view text, std::string_view stop);

// Takes the texts of a line, one after the other.
class EntryReader {
public:
    // Borrowed. `number` is for messages.
    EntryReader(std::string_view line, int number) : rest_(line), number_(number) {}

    // The text up to the first of the stops, or to the end; both stay. Throws InstallerError with the line's
    // number when quotes or escapes are wrong, or a quoted text is followed by something else.
    std::string takeText(std::initializer_list<std::string_view> stops);
    // Whether this comes next; then it is taken.
    bool take(std::string_view word);
    bool isAtEnd() const { return rest_.empty(); }
    std::string_view rest() const { return rest_; }

private:
    std::string takeQuoted();
    char takeEscaped();

    std::string_view rest_;
    int number_;
};

// Throws InstallerError("line NUMBER: TEXT").
[[noreturn]] void failAtLine(int number, const std::string& text);
