#pragma once

#include <cstdint>
#include <memory>

namespace OUtils {

// A growing text. Lengths and capacities are in bytes. Throws std::bad_alloc when a block can't be had.
class TextBuilder {
public:
    // `blockSize` is the granularity of the capacity, at least 16. `growthFactor` is 0 (no factor) or above
    // 1, at most 1,024; a factor of 1 or less becomes 0. Nothing is allocated yet.
    explicit TextBuilder(std::int64_t blockSize = 256, float growthFactor = 2.0F);

    TextBuilder& append(const char* text);  // null counts as empty
    TextBuilder& append(const char* text, std::int64_t length);
    TextBuilder& append(char character);
    TextBuilder& append(char character, std::int64_t count);  // a count below 1 appends nothing
    TextBuilder& appendInteger(std::int64_t value);

    // Empties the text and keeps the capacity; afterwards there is a block.
    void clear();

    // Zero-terminated; null while nothing was ever appended or cleared. Valid until the next change.
    const char* c_str() const { return data_.get(); }
    std::int64_t getLength() const { return length_; }
    std::int64_t getCapacity() const { return capacity_; }
    std::int64_t getBlockSize() const { return blockSize_; }
    float getGrowthFactor() const { return growthFactor_; }

private:
    void makeRoom(std::int64_t addition);

    std::int64_t blockSize_;
    float growthFactor_;
    std::int64_t capacity_ = 0;
    std::int64_t length_ = 0;
    std::unique_ptr<char[]> data_;
};

}  // namespace OUtils
