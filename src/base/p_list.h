#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

// A growing list of bitwise-movable elements. The block is copied with plain memory copies when it grows;
// element constructors and destructors never run, so a list of pointers doesn't own what they point to.
template <typename T>
class PList {
    static_assert(std::is_trivially_copyable_v<T>, "elements are moved by plain memory copies");

public:
    // `step` is the growth step in elements; a step below 1 doubles the capacity instead.
    explicit PList(std::int32_t step = -1) : step_(step) {}
    PList(const PList&) = delete;
    PList& operator=(const PList&) = delete;
    PList(PList&& other) noexcept : step_(other.step_) { swap(other); }
    PList& operator=(PList&& other) noexcept {
        swap(other);
        return *this;
    }
    ~PList() { std::free(data_); }

    void append(const T& element) {
        const T copy = element;  // the element may live in the block that grows
        if (count_ + 1 > capacity_) {
            grow(count_ + 1);
        }
        data_[count_++] = copy;
    }

    // No bound check: 0 <= index < getCount().
    T& at(std::int32_t index) { return data_[index]; }
    const T& at(std::int32_t index) const { return data_[index]; }

    std::int32_t getCount() const { return count_; }
    std::int32_t getCapacity() const { return capacity_; }

    // Forgets the elements and frees the block.
    void clear() {
        std::free(data_);
        data_ = nullptr;
        count_ = 0;
        capacity_ = 0;
    }

    T* begin() { return data_; }
    T* end() { return data_ + count_; }
    const T* begin() const { return data_; }
    const T* end() const { return data_ + count_; }

private:
    void swap(PList& other) noexcept {
        std::swap(count_, other.count_);
        std::swap(step_, other.step_);
        std::swap(capacity_, other.capacity_);
        std::swap(data_, other.data_);
    }

    void grow(std::int32_t needed) {
        std::int64_t capacity = capacity_;
        if (step_ >= 1) {
            capacity = static_cast<std::int64_t>(step_) + needed - needed % step_;
        } else if (capacity < 1) {
            capacity = needed;
        } else {
            while (capacity < needed) {
                capacity *= 2;
            }
        }
        if (capacity > INT32_MAX || static_cast<std::uint64_t>(capacity) > SIZE_MAX / sizeof(T)) {
            throw std::bad_alloc();
        }
        void* block = std::realloc(static_cast<void*>(data_), static_cast<std::size_t>(capacity) * sizeof(T));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        data_ = static_cast<T*>(block);
        capacity_ = static_cast<std::int32_t>(capacity);
    }

    std::int32_t count_ = 0;
    std::int32_t step_;
    std::int32_t capacity_ = 0;
    T* data_ = nullptr;
};
