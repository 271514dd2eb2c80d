#pragma once

#include <cstddef>
#include <string>

// Output strings start with room for what most documents need.
inline constexpr std::size_t kFirstOutputCapacity = 32768;

// Makes room for `times` as many bytes as the input has. A size that no text can have is passed over: the
// output grows as it comes.
inline void reserveOutput(std::string& output, std::size_t size, std::size_t times) {
    if (size <= output.max_size() / (times * 2)) {
        output.reserve(size * times);
    }
}
