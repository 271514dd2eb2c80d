#pragma once

#include <string>

// What a part of this test program did that ran as a program of its own.
struct ChildResult {
    int exitCode = -1;
    std::string output;  // with what the test library prints
    std::string error;
};

// Runs the disabled test `name` ("Suite.DISABLED_case") in a copy of this process, with `input` on a pipe.
ChildResult runChild(const std::string& name, const std::string& input);
