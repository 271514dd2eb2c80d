#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class PackagerCommand {
    kNone,
    kNew,
    kCheck,
    kBuild,
    kExpand,
    kList,
    kExtract,
    kVerify,
    kText,
    kSchema,
    kAnswers,
    kTry,
    kPreview
};

// What the command line asks for.
struct CommandLine {
    PackagerCommand command = PackagerCommand::kNone;
    bool help = false;
    bool version = false;

    std::string description;
    std::string root;
    std::string image;
    std::string output;
    bool bin = false;
    std::int32_t stripes = 0;  // 0: not given
    std::int32_t level = 9;
    bool oldChecksum = false;

    std::vector<std::string> allowed;  // codes of findings that don't stop a build

    std::string checked;  // the description of check
    std::string systems;  // of check; "windows", "linux" or "both"
    std::string format;   // of check; "text", "json" or "sarif"
    bool strict = false;  // of check and of preview

    std::string directory;  // of new

    std::string package;
    std::string target;                // of extract and of preview
    std::vector<std::string> aliases;  // of extract; empty: all

    std::string machine;   // of try, as are the next three
    std::string answers;   // empty: none
    std::string expected;  // empty: nothing is expected
    bool update = false;

    std::string document;  // of text
    bool html = false;
    bool plain = false;
    bool tree = false;  // also of extract
    bool verbatim = false;
    std::int32_t width = 0;  // 0: not given

    std::string previewed;                // of preview: a package, or a description with `root`
    std::vector<std::string> answerSets;  // of preview: files with answers
    std::string sizes;                    // of preview: of letters
    std::string earlier;                  // of preview: the one to compare with
    bool usesDisplay = false;             // of preview

    // What is wrong with the command line, in one line; empty when nothing is.
    std::string problem;
};

// Reads the arguments after the program's name. Options are `--name value` or `--name=value`; after `--` no
// word is an option.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

// All commands, and all options with their two hyphens.
std::vector<std::string_view> commandNames();
std::vector<std::string> optionNames();

// The help for a command; kNone gives the overview of all.
std::string helpText(PackagerCommand command);
