#pragma once

namespace platform {

// What ends a line in the text files of this system: "\r\n" on Windows, else "\n".
const char* textLineEnd();

}  // namespace platform
