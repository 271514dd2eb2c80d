#pragma once

#include <string>

class PXML;
namespace platform {
struct Platform;
}

// What can be known of a package before anything is started.
enum class PackageKind {
    kNone,        // the program carries no package, and none was named
    kUnreadable,  // it can't be read, or has no description
    kReadable,
};

// Reads the description of a package into `outDescription`, which is new. `binFile` is the package; empty
// stands for the program's own. Nothing is said of a failure.
PackageKind readPackageDescription(const std::string& binFile, platform::Platform& platform,
                                   PXML& outDescription);
