#pragma once

#include <string_view>

#include "support/byte_progress.h"
#include "support/p_file_stream.h"

// The checksum trailer after the payload of a package. package_layout.md describes its form.

enum class ChecksumVersion {
    kVersion1,  // covers the whole file, so signing breaks it
    kVersion2,  // leaves out the headers, so that the file can be signed
};

// True when the last trailer within the file's last 20,000 bytes is valid. Reads the whole file once.
bool verifyInstallerChecksum(std::string_view path, platform::FileSystem& files,
                             const ByteProgress& progress = {});

// Appends a trailer to the file. Returns 0 or the error number of the call that failed.
int appendInstallerChecksum(std::string_view path, ChecksumVersion version, platform::FileSystem& files);

// The version that a value of the environment variable OLD_CHECKSUMMING selects: version 1 when it begins
// with `1`, otherwise version 2.
ChecksumVersion checksumVersionFor(std::string_view oldChecksumming);
