#pragma once

#include <cstddef>
#include <string>

// Most documents fit into an output string of this size.
inline constexpr std::size_t kFirstOutputCapacity = 32768;

// Makes room for `times` the `size` of the input, in bytes. Ignores a size that no text can have; the output
// then grows as needed.
inline void reserveOutput(std::string& output, std::size_t size, std::size_t times) {
    if (size <= output.max_size() / (times * 2)) {
        output.reserve(size * times);
    }
}
