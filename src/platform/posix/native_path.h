#pragma once

#include <string>

namespace platform {

// The path that the system understands: `\` turned into `/`, a leading drive ("C:") dropped. Null counts as
// empty.
std::string nativePath(const char* path);

}  // namespace platform
