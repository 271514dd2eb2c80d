#pragma once

namespace platform {
class FileSystem;
}

// The path of a new temporary file of this process: no two calls give the same. No file is made. 0; -1 when
// the system refuses or the path doesn't fit `size` bytes, and then `buffer` is empty. Any thread.
int makeTemporaryName(platform::FileSystem& files, char* buffer, int size);
