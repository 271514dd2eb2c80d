#include "platform/written_path.h"

#include "platform/linux_path.h"
#include "platform/manner.h"

namespace platform {

std::string writtenPath(std::string_view path) {
    if (const Manner* const manner = currentManner) {
        return manner->writtenPath(path);
    }
    return linuxPath(path);
}

}  // namespace platform
