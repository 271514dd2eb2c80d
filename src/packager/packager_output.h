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
    virtual void tell(std::string_view line) = 0;   // an error or warning, to standard error
    // What is being done, and how much of it, 0 to 100. Shown on a terminal only.
    virtual void progress(const char* step, int percent) = 0;
    // Whether everything that was printed has arrived; the last call.
    virtual bool finish() = 0;
};

// Text of a package or a file name for a line on a terminal: control characters become `?`.
std::string printable(std::string_view text);
