#pragma once

#include <string>
#include <string_view>

namespace platform {
class FileSystem;
}

// What was in the place of a change before it, for the line BEFORE of the action log. Some records don't
// bring back what their change replaced: their undo takes away what is there. When a run is killed between
// such a record and its change, or somebody has put the former thing back, that would be somebody else's.
namespace FormerState {

// Of a text or of bytes: their digest.
std::string ofBytes(std::string_view bytes);
// Of a plain file or a link, which isn't followed. Empty when there is nothing, or when it can't be read.
std::string ofFile(platform::FileSystem& files, std::string_view path);
// Whether a result of ofFile describes a link.
bool isOfLink(std::string_view former);

}  // namespace FormerState
