#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The same sequence for a seed on every system (SplitMix64, Steele, Lea and Flood 2014).
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15U);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }
    // 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }
    bool oneIn(std::size_t count) { return below(count) == 0; }

private:
    std::uint64_t state_;
};
