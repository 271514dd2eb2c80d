#include "engine/changes/removed_files.h"

#include "base/path_functions.h"
#include "base/text_functions.h"

namespace {

std::string keyOf(std::string_view path) {
    return OUtils::toLowerAscii(OUtils::normalizedPath(std::string(path)));
}

}  // namespace

void RemovedFiles::add(std::string_view path) {
    paths_.insert(keyOf(path));
}

bool RemovedFiles::contains(std::string_view path) const {
    return paths_.contains(keyOf(path));
}
