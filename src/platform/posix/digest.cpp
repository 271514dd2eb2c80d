#include "platform/digest.h"

#include <sys/types.h>
// The library's header needs the types above.
#include <md5.h>

namespace platform {

struct Md5Context::State {
    MD5_CTX context;
};

Md5Context::Md5Context() : state_(std::make_unique<State>()) {
    MD5Init(&state_->context);
}

Md5Context::~Md5Context() = default;

void Md5Context::update(const void* data, std::size_t size) {
    if (size > 0) {
        MD5Update(&state_->context, static_cast<const std::uint8_t*>(data), size);
    }
}

std::array<std::uint8_t, 16> Md5Context::finish() {
    static_assert(MD5_DIGEST_LENGTH == 16);
    std::array<std::uint8_t, 16> digest{};
    MD5Final(digest.data(), &state_->context);
    return digest;
}

}  // namespace platform
