#pragma once

#include <cstddef>
#include <vector>

// How a row or column of pixels becomes a shorter or longer one: which source pixels each target pixel is
// made of, and with which weights. The weights of a target pixel add up to 1. Made smaller, each source pixel
// counts, so that fine lines don't vanish; made larger, edges stay smooth and crisp.
class WeightTable {
public:
    // Both lengths are at least 1.
    WeightTable(int sourceLength, int targetLength);

    struct Span {
        int first;  // of the source pixels
        int count;  // at least 1, all within the source
        const float* weights;
    };
    // `target` is in 0 ... targetLength - 1. Good as long as the table.
    Span at(int target) const;

private:
    struct Entry {
        int first;
        int count;
        std::size_t offset;
    };
    void addEntry(double centre, double stretch);
    double weightAt(double offset, double stretch) const;

    int sourceLength_;
    bool shrinks_;
    std::vector<Entry> entries_;
    std::vector<float> weights_;
};
