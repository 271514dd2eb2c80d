#pragma once

#include <cstddef>
#include <string_view>

// The words and limits of machine files and expectations; machine_format.md describes them.
namespace MachineFormat {

inline constexpr std::size_t kMostBytes = 16U << 20U;  // of a file
inline constexpr int kMostLines = 200'000;
inline constexpr int kMostSteps = 20;
inline constexpr std::size_t kMostPathBytes = 4096;  // of a path or a key of the registry
inline constexpr std::size_t kMostRules =
    1000;  // lines of a section each of which is looked at again and again

inline constexpr char kComment = '#';
inline constexpr std::string_view kIs = " = ";      // between what is named and what it is
inline constexpr std::string_view kOf = " : ";      // between a key of the registry and the name of a value
inline constexpr std::string_view kAnything = "*";  // in an expectation: any value

// Sections of a machine file.
inline constexpr std::string_view kMachine = "machine";
inline constexpr std::string_view kSteps = "steps";
inline constexpr std::string_view kDirectories = "directories";
inline constexpr std::string_view kFiles = "files";
inline constexpr std::string_view kPrograms = "programs";
inline constexpr std::string_view kCopies = "copies";
inline constexpr std::string_view kLinks = "links";
inline constexpr std::string_view kReadOnly = "read-only";
inline constexpr std::string_view kFreeSpace = "free space";
inline constexpr std::string_view kRegistry = "registry";
inline constexpr std::string_view kRegistry32 = "registry 32";
inline constexpr std::string_view kEnvironment = "environment";
inline constexpr std::string_view kProcessEnvironment = "process environment";
inline constexpr std::string_view kRunning = "running";
inline constexpr std::string_view kResults = "results";

// Entries of the section "machine", and the words of the first.
inline constexpr std::string_view kSystem = "system";
inline constexpr std::string_view kLinux = "linux";
inline constexpr std::string_view kWindows = "windows";
inline constexpr std::string_view kSetup = "setup";
inline constexpr std::string_view kTemporary = "temporary directory";

inline constexpr std::string_view kInstall = "install";
inline constexpr std::string_view kFrom = "from";  // another package, beside the machine file
inline constexpr std::string_view kUninstall = "uninstall";
inline constexpr std::string_view kCannotStart = "cannot start";

// Sections of an outcome, behind the name of a step. Files, registry and environment share their names with
// those above.
inline constexpr std::string_view kResult = "result";
inline constexpr std::string_view kOutput = "output";
inline constexpr std::string_view kVariables = "variables";
inline constexpr std::string_view kShortcuts = "shortcuts";
inline constexpr std::string_view kFirewall = "firewall";
inline constexpr std::string_view kActions = "actions";
inline constexpr std::string_view kRecords = "records";
inline constexpr std::string_view kLog = "log";

// Between the fields of a record.
inline constexpr std::string_view kField = " | ";

// What an outcome shows of a file: the content of a short text, otherwise size and digest.
inline constexpr std::size_t kMostShownBytes = 120;

}  // namespace MachineFormat
