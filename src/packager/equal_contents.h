#pragma once

#include <optional>
#include <string>

#include "support/md5.h"

namespace platform {
class FileSystem;
}

// Whether two files hold the same bytes. False, too, when one of them can't be read: whoever packs it says
// so.
bool haveEqualContents(platform::FileSystem& files, const std::string& first, const std::string& second);

// The digest of what the file holds; none when it can't be read.
std::optional<Md5Digest> contentDigest(platform::FileSystem& files, const std::string& path);
