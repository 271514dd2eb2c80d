#pragma once

#include "support/p_file_stream.h"

// The checksum trailer behind the payload of a package. package_layout.md tells its form.

enum class ChecksumVersion {
    kVersion1,  // covers the whole file; signing breaks it
    kVersion2,  // leaves out the headers, so that the file can be signed
};

// True when the last trailer within the file's last 20,000 bytes is valid. Reads the whole file once.
bool verifyInstallerChecksum(const char* path, platform::FileSystem& files = platform::systemFileSystem());

// Puts a trailer behind the file's present end. 0 or the error number of the call that failed.
int appendInstallerChecksum(const char* path, ChecksumVersion version,
                            platform::FileSystem& files = platform::systemFileSystem());
// The same with the version that the environment variable OLD_CHECKSUMMING selects.
int appendInstallerChecksum(const char* path, platform::FileSystem& files = platform::systemFileSystem());

// What a value of OLD_CHECKSUMMING selects: version 1 when it begins with `1`, else version 2. Null: not set.
ChecksumVersion checksumVersionFor(const char* oldChecksumming);
