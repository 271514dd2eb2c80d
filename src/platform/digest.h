#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace platform {

// MD5 (RFC 1321) by the system's or a well-kept library's implementation.
class Md5Context {
public:
    Md5Context();
    ~Md5Context();
    Md5Context(const Md5Context&) = delete;
    Md5Context& operator=(const Md5Context&) = delete;

    void update(const void* data, std::size_t size);
    // Ends the digest; the object can't be updated any more.
    std::array<std::uint8_t, 16> finish();

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace platform
