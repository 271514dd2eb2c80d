#include "engine/changes/former_state.h"

#include "engine/product_state.h"
#include "platform/file_system.h"
#include "support/md5.h"

namespace FormerState {

std::string ofBytes(std::string_view bytes) {
    return md5Text(md5Of(bytes.data(), bytes.size()));
}

namespace {

constexpr char kLink[] = "LINK";

// Where the text of a link can't be read, no change of ours leaves one.
std::string ofLink(platform::FileSystem& files, std::string_view path) {
    std::string target;
    return files.linkTarget(path, target) == 0 ? kLink + ofBytes(target) : kLink;
}

}  // namespace

std::string ofFile(platform::FileSystem& files, std::string_view path) {
    const platform::PathKind kind = files.kindOf(path);
    if (kind == platform::PathKind::kLink) {
        return ofLink(files, path);
    }
    const auto digest = kind == platform::PathKind::kFile ? digestOfFile(files, path) : std::nullopt;
    return digest ? md5Text(*digest) : std::string();
}

bool isOfLink(std::string_view former) {
    return former.starts_with(kLink);
}

}  // namespace FormerState
