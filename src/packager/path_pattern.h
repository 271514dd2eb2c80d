#pragma once

#include <string>
#include <string_view>
#include <vector>

// A pattern for paths whose parts are separated by `/`. In a part, `*` stands for any text and `?` for one
// character; a part `**` stands for any number of parts. A pattern without `/` is matched against the last
// part of a path alone. Letters count as they are written.
class PathPattern {
public:
    // A `/` at the start says that the pattern is for the whole path; one at the end, or `\`, is as good as
    // any `/`. A pattern without a part matches nothing.
    explicit PathPattern(std::string_view text);

    // The time is at most the product of the lengths of pattern and path.
    bool matches(std::string_view path) const;

private:
    std::vector<std::string> parts_;
    bool isForLastPart_ = false;
};

// Patterns separated by `;`, without the white space around them.
class PathPatterns {
public:
    explicit PathPatterns(std::string_view text);

    bool areNone() const { return patterns_.empty(); }
    bool matchAny(std::string_view path);
    // The patterns that have matched nothing so far, as they were written.
    std::vector<std::string> unused() const;

private:
    struct Row {
        std::string text;
        PathPattern pattern;
        bool isUsed = false;
    };
    std::vector<Row> patterns_;
};
