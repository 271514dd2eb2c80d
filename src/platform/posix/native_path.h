#pragma once

#include <string>
#include <string_view>

namespace platform {

// The path that the system understands: `\` turned into `/`, a leading drive ("C:") dropped.
std::string nativePath(std::string_view path);

}  // namespace platform
