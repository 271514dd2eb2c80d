#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/memory_manner.h"

// What a run of the previewer is asked for, by the packager or by the previewer itself.
struct PreviewOptions {
    std::string package;
    std::int64_t offset = 0;                     // of the payload in the file
    std::optional<MemoryManner::System> system;  // of the machine in memory; set when nothing is wrong
    std::string title;                           // what the preview is called; empty: as the package
    std::string directory;
    std::vector<std::string> answers;  // files with answers; none: the default answers alone
    std::vector<int> sizes;            // of letters, in percent
    std::string earlier;               // a preview to compare with; empty: none
    bool isStrict = false;             // faults are failures
    bool usesDisplay = false;          // the user's own one
    // One walk in a window, for the set of this number (0: the default answers), in a process of its own.
    int windowSet = -1;

    // What is wrong with the arguments, in one line; empty when nothing is.
    std::string problem;
};

// Reads `--name value` and `--name` from the arguments after the program's name.
PreviewOptions readPreviewOptions(const std::vector<std::string>& arguments);

// The word that names the system in the arguments.
std::string_view systemWord(MemoryManner::System system);

// Sizes such as "100,150": up to 8 numbers from 50 to 400. Empty when one isn't.
std::vector<int> readSizes(std::string_view text);
