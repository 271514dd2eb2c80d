#include "packager/make_directories.h"

#include <cstddef>

#include "platform/file_system.h"

int makeDirectories(const std::string& path, platform::FileSystem& files, std::string& outFailed) {
    for (std::size_t end = path.find_first_of("/\\", 1);; end = path.find_first_of("/\\", end + 1)) {
        const std::string part = path.substr(0, end);
        const int status = files.isDirectory(part) ? 0 : files.createDirectory(part);
        if (status != 0 && !files.isDirectory(part)) {
            outFailed = part;
            return status;
        }
        if (end == std::string::npos) {
            return 0;
        }
    }
}
