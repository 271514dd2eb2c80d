#pragma once

#include <string>
#include <string_view>

namespace platform {

// A text that is the same for all spellings of a path by which the system finds one file: separators and
// repeated ones, a drive that the system doesn't have, letters of either case where it doesn't tell them
// apart. Nothing is looked up on a disk: links, `.` and `..` and relative paths stay as they are. Only for
// comparing; the result need not be a path that the system takes.
std::string pathIdentity(std::string_view path);

}  // namespace platform
