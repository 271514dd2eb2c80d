#pragma once

#include <string>
#include <string_view>

// Where the tool writes. Lines are UTF-8 without a line end.
class PackagerOutput {
public:
    PackagerOutput() = default;
    PackagerOutput(const PackagerOutput&) = delete;
    PackagerOutput& operator=(const PackagerOutput&) = delete;
    virtual ~PackagerOutput() = default;

    virtual void print(std::string_view line) = 0;  // a result, to standard output
    virtual void warn(std::string_view line) = 0;   // an error or warning, to standard error
    // What is being done, and how much of it is done, 0 to 100. Shown on a terminal only.
    virtual void progress(std::string_view step, int percent) = 0;
    // The last call. True when everything that was printed has been written.
    virtual bool finish() = 0;
};

// Prints a text of several lines, whatever its line ends.
void printLines(std::string_view text, PackagerOutput& output);

// Makes text from a package, or a file name, fit for one line: what OUtils::visibleText replaces, line ends
// and TABs become `?`.
std::string printable(std::string_view text);
