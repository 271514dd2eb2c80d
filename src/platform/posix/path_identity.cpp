#include "platform/path_identity.h"

#include "platform/linux_path.h"
#include "platform/manner.h"

namespace platform {

std::string pathIdentity(std::string_view path) {
    if (const Manner* const manner = currentManner) {
        return manner->pathIdentity(path);
    }
    std::string identity;
    for (const char c : linuxPath(path)) {
        if (c != '/' || identity.empty() || identity.back() != '/') {
            identity += c;
        }
    }
    return identity;
}

}  // namespace platform
