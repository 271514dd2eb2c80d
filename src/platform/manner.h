#pragma once

#include <atomic>
#include <string>
#include <string_view>

namespace platform {

// How a system writes its paths, ends its lines and names its errors: the answers of the functions of the
// same names in written_path.h, path_identity.h, text_mode.h and error_text.h.
class Manner {
public:
    virtual ~Manner() = default;
    virtual std::string writtenPath(std::string_view path) const = 0;
    virtual std::string pathIdentity(std::string_view path) const = 0;
    virtual const char* textLineEnd() const = 0;
    virtual std::string errorText(int status) const = 0;
    virtual std::string registryErrorText(int status) const = 0;
};

// For MannerInUse and the functions that ask it. Null: the system's own manner.
inline std::atomic<const Manner*> currentManner{nullptr};

// While it lives, those functions answer in this manner instead of the system's own, on all threads: what
// runs on a machine in memory then does the same on every system. At most one lives at a time.
class MannerInUse {
public:
    // Borrowed, and outlives this object.
    explicit MannerInUse(const Manner& manner) { currentManner = &manner; }
    ~MannerInUse() { currentManner = nullptr; }
    MannerInUse(const MannerInUse&) = delete;
    MannerInUse& operator=(const MannerInUse&) = delete;
};

}  // namespace platform
