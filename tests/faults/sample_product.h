#pragma once

#include <string>

#include "platform/memory/memory_file_system.h"

class Machine;

// The product that the project delivers itself as, in versions: the second one has changed, new and dropped
// files and other settings. The broken one lacks a file, so that its installation fails after everything
// else.
namespace SampleProduct {

enum class Version { kFirst, kSecond, kBrokenSecond };

inline constexpr const char* kKit = "/kit";
inline constexpr const char* kLog = "/opt/tandrel/uninstall/install.log";
inline constexpr const char* kArchive = "/opt/tandrel/uninstall/backup.bin";
inline constexpr const char* kUninstaller = "/opt/tandrel/uninstall/installer";

std::string packageOf(Version version);
// Puts the packages on the machine, and what a user had there before: among it a file that the product
// replaces, and settings that it changes.
void prepare(Machine& machine);
// What a program of the product does when it is started.
void runProgram(MemoryFileSystem& files, const std::string& commandLine);

}  // namespace SampleProduct
