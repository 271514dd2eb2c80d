#pragma once

#include "packager/command_line.h"
#include "packager/packager_output.h"

namespace platform {
class FileSystem;
}

// Checks the description that is to be packed, for the system of the image, and reports what is found:
// errors, those that the command line allows, warnings. Throws InstallerError when an error isn't allowed. A
// description that can't be read is left to whoever packs it.
void checkBeforeBuild(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
