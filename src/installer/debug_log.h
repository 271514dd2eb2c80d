#pragma once

#include <string>

class PFileConsole;

namespace platform {
class ConsoleDevice;
class Environment;
class FileSystem;
struct LocalTime;
}  // namespace platform

// The levels of the debug log: 0 is off, 1 overwrites one file, 2 and above keep a file for each run.
inline constexpr int kLargestDebugLevel = 4;

// The level that the environment asks for: 1 for the word "true", else the text as a number, 0 when
// the variable isn't set.
int debugLevelOfEnvironment(platform::Environment& environment);

// The log's file name: with the date and time from level 2, with the seconds from level 3.
std::string debugLogFileName(int level, const platform::LocalTime& time);

// Opens the log in the temporary directory when the larger of `requested` and the environment's level is
// above 0, and says on standard output where it is or why it isn't. Returns the level, from 0 to 4.
int openDebugLog(PFileConsole& log, int requested, platform::Environment& environment,
                 platform::FileSystem& files, platform::ConsoleDevice& output);
