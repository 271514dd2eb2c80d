#pragma once

#include <cstdlib>
#include <string_view>

// What a fuzz target consists of: its source defines `accepts`, and fuzz_main.cpp calls it for each input.

// Gives the input to the reader that the target is for and checks by `require` what holds for any input. True
// when the reader took the input as a whole and everything after it was reached, so that good seeds prove
// what the target covers.
bool accepts(std::string_view input);

// Ends the run as a finding unless it holds.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}
