#pragma once

#include <cerrno>
#include <cstddef>

// Small helpers around system calls that the files of this folder share.
namespace platform {

// Repeats a call that a signal interrupted before it did anything.
template <typename Call>
auto retryInterrupted(Call call) {
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR) {
            return result;
        }
    }
}

// Owns a file descriptor.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    // Returns 0 or errno; the descriptor is closed in any case.
    int close();
    // Gives the number to the caller, who closes it.
    int release() {
        const int number = number_;
        number_ = -1;
        return number;
    }

private:
    int number_;
};

// Writes all of it, also to a descriptor that doesn't block. Returns 0 or errno; `outDone` gets the bytes
// written in any case.
int writeAll(int descriptor, const char* data, std::size_t size, std::size_t& outDone);

}  // namespace platform
