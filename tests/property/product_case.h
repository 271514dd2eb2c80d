#pragma once

#include <string>
#include <vector>

#include "random_numbers.h"

enum class ItemKind {
    kFile,
    kEnvironment,
    kIni,
    kModifyFile,
    kShortcut,
    kFirewallPort,
    kFirewallApplication,
    kRegistryValue,
    kRegistryKey,
    kRemoveRegistryValue,
    kRemoveRegistryKey,
    kCopyFile,
    kCreateFile,
    kRemoveFile,
    kRemoveDirectory,
    kRunProgram,
};
inline constexpr int kItemKindCount = 16;

// One thing that a description asks for. Its number keeps its names apart from those of all other items.
struct Item {
    ItemKind kind = ItemKind::kFile;
    int number = 0;
    int variant = 0;                 // the kind's own choice: a mode, a type, a place
    bool option = false;             // the kind's own option: BackupExisting, IsPath, BeforeKey ...
    bool earlier = false;            // there is something at its place ahead of the installation
    bool touched = false;            // the user changes it between installation and uninstallation
    std::vector<std::string> lines;  // texts of its own

    std::string name(const std::string& stem) const { return stem + std::to_string(number); }
};

// What happens between the first installation and the last uninstallation, besides what the user does.
enum class Course {
    kPlain,
    kInstallAgain,        // once or twice more
    kRepair,              // files of the product are damaged or deleted and installed again
    kDamageArchive,       // one byte of the backup archive changes
    kCutArchive,          // the archive ends early
    kLoseArchive,         // the archive is gone
    kDamageLog,           // one byte of the action log changes
    kCutLog,              // the log ends early
    kFailInstallation,    // one call of the file system fails while the product is installed
    kFailUninstallation,  // one fails while it is uninstalled, which is done again afterwards
    kFillDisk,            // the disk fills up while the product is installed
};
inline constexpr int kCourseCount = 11;
// Why the random cases leave it out: what the programs can't do yet. Null for the others.
const char* limitOf(Course course);
// The kinds of calls of the file system that can be made to fail (MemoryFileSystem::Operation, from its
// start).
inline constexpr int kFailingOperationCount = 13;
const char* nameOf(Course course);

// A product, the machine that it meets and what its user does to it.
struct ProductCase {
    std::vector<Item> items;
    Course course = Course::kPlain;
    int point = 0;             // of the course: a byte, or the number of the call
    int operation = 0;         // of a course with a failing call: the kind of the call
    bool foreignFile = false;  // the user puts a file into the product's directory
    bool firewallOff = false;
    bool registers = false;  // the product registers itself as an application
};

ProductCase randomCase(RandomNumbers& random);
// The description of the product, with the change descriptions as files of the package.
std::string describe(const ProductCase& product);
// In words, for a report.
std::string summarize(const ProductCase& product);

// Where the items live.
std::string filePathOf(const Item& file);
std::string installedContentOf(const Item& file);
std::string earlierContentOf(const Item& file);
std::string iniPathOf(const Item& ini);
std::string textPathOf(const Item& modified);
std::string linkPathOf(const Item& shortcut);
std::string registryPathOf(const Item& item);
std::string environmentValueOf(const Item& item);
