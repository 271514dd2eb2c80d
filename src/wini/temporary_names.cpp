#include "wini/temporary_names.h"

#include <atomic>
#include <string>

#include "base/text_functions.h"
#include "platform/file_system.h"

namespace {

constexpr char kPrefix[] = "orinstall";

std::atomic<std::uint32_t> lastNumber{0};

}  // namespace

int makeTemporaryName(platform::FileSystem& files, char* buffer, int size) {
    OUtils::copyText(buffer, "", size);
    std::string path;
    if (!files.temporaryName(kPrefix, ++lastNumber, path) || static_cast<std::int64_t>(path.size()) >= size) {
        return -1;
    }
    OUtils::copyText(buffer, path.c_str(), size);
    return 0;
}
