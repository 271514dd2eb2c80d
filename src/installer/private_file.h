#pragma once

namespace platform {
class FileSystem;
}

// Makes an empty file of a fixed name in a directory that others can write to, as a file of this user alone:
// what stood there, a link included, is taken away first and never written through. 0, or the system's error
// number.
int createFreshPrivateFile(platform::FileSystem& files, const char* path);
