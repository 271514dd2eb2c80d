#pragma once

#include <string>

// Leaves a decoding library from within its error callback. Its functions are C, but on x86-64 both systems
// require unwind tables for every function, so an exception passes through them and, unlike a longjmp, runs
// the destructors of our own frames.
struct DecodeError {
    std::string reason;  // in the library's words
};
