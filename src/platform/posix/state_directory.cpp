#include "platform/posix/state_directory.h"

#include <cstdlib>

#include "platform/linux_path.h"

namespace platform {

const std::string& stateDirectory() {
    static const std::string directory = [] {
        const char* configured = std::getenv("TANDREL_STATE_DIR");
        return linuxPath(configured != nullptr && *configured != '\0' ? configured : kDefaultStateDirectory);
    }();
    return directory;
}

}  // namespace platform
