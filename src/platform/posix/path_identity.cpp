#include "platform/path_identity.h"

#include "platform/posix/native_path.h"

namespace platform {

std::string pathIdentity(std::string_view path) {
    std::string identity;
    for (const char c : nativePath(path)) {
        if (c != '/' || identity.empty() || identity.back() != '/') {
            identity += c;
        }
    }
    return identity;
}

}  // namespace platform
