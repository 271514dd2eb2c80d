#include "engine/changes/former_state.h"

#include "engine/product_state.h"
#include "platform/file_system.h"
#include "support/md5.h"

namespace FormerState {

namespace {

// No change of ours leaves a link.
constexpr char kLink[] = "LINK";

}  // namespace

std::string ofBytes(std::string_view bytes) {
    return md5Text(md5Of(bytes.data(), bytes.size()));
}

std::string ofFile(platform::FileSystem& files, std::string_view path) {
    const platform::PathKind kind = files.kindOf(path);
    if (kind == platform::PathKind::kLink) {
        return kLink;
    }
    const auto digest = kind == platform::PathKind::kFile ? digestOfFile(files, path) : std::nullopt;
    return digest ? md5Text(*digest) : std::string();
}

}  // namespace FormerState
