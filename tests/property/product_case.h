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
    kCleaning,  // a directory that the product fills while it runs, and a pattern of UninstallWildcards
};
inline constexpr int kItemKindCount = 17;

// What somebody else has put in the place of an item, so that the programs do there what they must not.
enum class Trap {
    kNone,
    kLink,         // a link to somebody's file, or directory where the item has one
    kHardLink,     // one more name of somebody's file
    kOddName,      // in a cleaned directory: an entry whose name leads to somebody's file
    kLinkedPlace,  // instead of a cleaned directory: a link to somebody's
};
inline constexpr int kTrapCount = 5;

// One thing that a description asks for. Its number keeps its names apart from those of all other items.
struct Item {
    ItemKind kind = ItemKind::kFile;
    int number = 0;
    int variant = 0;                 // the kind's own choice: a mode, a type, a place
    bool option = false;             // the kind's own option: BackupExisting, IsPath, BeforeKey ...
    bool earlier = false;            // there is something at its place before the installation
    bool isPrivate = false;          // only its user may read that
    bool touched = false;            // the user changes it between installation and uninstallation
    Trap atFirst = Trap::kNone;      // there before the installation
    Trap later = Trap::kNone;        // put there between installation and uninstallation
    std::vector<std::string> lines;  // texts of its own
    int release = 0;  // of a product with versions: the one that asks for it, as its contents show

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
    kLoseLog,             // the log is gone
    kFailInstallation,    // one call of the system fails while the product is installed
    kFillDisk,            // the disk fills up while the product is installed
    kFailUninstallation,  // one call fails while it is uninstalled
    kFillDiskAtEnd,       // the disk fills up while it is uninstalled
};
inline constexpr int kCourseCount = 13;

// What holds after a course. In all of them the user loses nothing (safety.h), and what a run says is true.
enum class Promise {
    kEnd,          // everything is as it was at first (expected_end.h)
    kFailure,      // the uninstallation fails and can be repeated
    kEndAtLast,    // everything is as it was, at the latest after a second uninstallation
    kNothingDone,  // the uninstallation fails and changes nothing
    kNoLoss,       // nothing more
};

const char* nameOf(Course course);
Promise promiseOf(Course course);

// A product, the machine that it meets and what its user does to it.
struct ProductCase {
    std::vector<Item> items;
    Course course = Course::kPlain;
    int point = 0;             // of the course: a byte, or the number of the call
    int operation = 0;         // of a course with a failing call: the kind of the call (product_life.h)
    bool reinstalled = false;  // where the course spoils the records: the product is installed once more
    bool foreignFile = false;  // the user puts a file into the product's directory
    bool firewallOff = false;
    bool registers = false;  // the product registers itself as an application
};

// How a version of a product meets the one that is there.
struct Release {
    int number = 1;
    bool removesEarlier = false;
    bool fails = false;  // after everything was done; then it takes itself back
};

ProductCase randomCase(RandomNumbers& random);
Item randomItem(RandomNumbers& random, int number);
// The description of the product, with the change descriptions as files of the package.
std::string describe(const ProductCase& product);
// The same for a product with versions.
std::string describe(const ProductCase& product, const Release& release);
// One line for each item.
std::string summarize(const std::vector<Item>& items);
// Whether its change can't be made: a link is in the place of what is to be backed up or edited, there is
// nothing to be edited, or it is a type of shortcut that doesn't exist yet.
bool isRefused(const Item& item);
// Whether an installation comes to this element: one that can't be made is the last one of its group.
bool isReached(const ProductCase& product, const Item& item);
// In words, for a report.
std::string summarize(const ProductCase& product);

// Where the items live; empty for those that aren't one file or directory.
std::string placeOf(const Item& item);
std::string filePathOf(const Item& file);
std::string installedContentOf(const Item& file);
std::string createdContentOf(const Item& createFile);
// What says which lines to add to a text.
std::string editScriptOf(const Item& modifyFile);
std::string earlierContentOf(const Item& file);
std::string linkPathOf(const Item& shortcut);
std::string registryPathOf(const Item& item);  // as the description has it
std::string registryKeyOf(const Item& item);   // the same, as the registry has it
std::string environmentValueOf(const Item& item);
