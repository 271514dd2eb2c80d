#pragma once

#include <string>
#include <string_view>

namespace platform {

// The path that Linux understands: `\` turned into `/`, a leading drive ("C:") dropped.
std::string linuxPath(std::string_view path);

}  // namespace platform
