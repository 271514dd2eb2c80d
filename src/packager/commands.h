#pragma once

#include <string>
#include <vector>

#include "packager/command_line.h"
#include "packager/packager_output.h"
#include "platform/environment.h"
#include "platform/processes.h"
#include "support/p_file_stream.h"

// The commands of the tool. Each throws InstallerError with one line when it fails. All objects are borrowed.
void runBuild(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files,
              platform::Environment& environment);
void runExpand(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
// False: there are findings that fail, and they have been printed.
bool runCheck(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
// Writes a file of answers for the product of a package or a description.
void runAnswers(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
void runSchema(PackagerOutput& output);
void runList(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
void runExtract(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
void runVerify(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
// Writes the template of a product into a directory in which none of its files is.
void runNew(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
// False: what came of it isn't what was expected, or a step failed and nothing was expected. It has been
// said.
bool runTry(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
void runText(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files);
// Has the previewer beside the packager draw the pages. False: it has said itself what fails.
bool runPreview(const CommandLine& commandLine, platform::FileSystem& files,
                platform::Environment& environment, platform::Processes& processes);

// The whole tool, from the arguments after the program's name to the exit code: 0 done, 1 failed, 2 wrong
// use.
int runPackager(const std::vector<std::string>& arguments, PackagerOutput& output,
                platform::FileSystem& files, platform::Environment& environment,
                platform::Processes& processes);
