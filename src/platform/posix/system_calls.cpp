#include "platform/posix/system_calls.h"

#include <poll.h>
#include <unistd.h>

namespace platform {

Descriptor::~Descriptor() {
    close();
}

int Descriptor::close() {
    if (number_ < 0) {
        return 0;
    }
    const int number = number_;
    number_ = -1;
    // Linux frees the number even when it reports an interruption, so this call must not be repeated.
    return ::close(number) == 0 || errno == EINTR ? 0 : errno;
}

int writeAll(int descriptor, const char* data, std::size_t size, std::size_t& outDone) {
    outDone = 0;
    while (outDone < size) {
        const ssize_t done =
            retryInterrupted([&] { return write(descriptor, data + outDone, size - outDone); });
        if (done >= 0) {
            outDone += static_cast<std::size_t>(done);
            continue;
        }
        if (errno != EAGAIN) {
            return errno;
        }
        pollfd ready{descriptor, POLLOUT, 0};
        if (retryInterrupted([&] { return poll(&ready, 1, -1); }) < 0) {
            return errno;
        }
    }
    return 0;
}

}  // namespace platform
