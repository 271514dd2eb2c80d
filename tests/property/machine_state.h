#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "fakes/fake_platform.h"
#include "product_case.h"

// What the user puts into the product's directory after the installation.
inline constexpr const char* kForeignFile = "/product/mine";
inline constexpr const char* kForeignContent = "the user's";

// What an uninstallation must leave as it was, in a form in which allowed differences don't show: entries of
// the environment without empty ones, INI files as their keys by section, text files without the difference
// of line ends.
struct MachineState {
    std::map<std::string, std::string> files;
    std::set<std::string> directories;
    std::map<std::string, std::string> registry;  // keys and values
    std::map<std::string, std::vector<std::string>> environment;
    std::set<std::string> firewall;
};

// A desktop whose links are files.
class DiskShellObjects : public FakeShellObjects {
public:
    explicit DiskShellObjects(MemoryFileSystem& files) : files_(files) {}
    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;

private:
    MemoryFileSystem& files_;
};

MachineState takeState(FakePlatform& machine);

// Puts the earlier things of the items onto the machine.
void prepareMachine(FakePlatform& machine, const ProductCase& product);
// What the user does between installation and uninstallation.
void useMachine(FakePlatform& machine, const ProductCase& product);

// Deletes and overwrites files of the product, as a repair finds them.
void damageProduct(FakePlatform& machine, const ProductCase& product);

// What must be there in the end, given what was there at first.
MachineState expectedEnd(const MachineState& start, const ProductCase& product);
// May the uninstallation tell of something that stays?
bool mayLeaveSomething(const ProductCase& product);
// Leaves out variables in which the user had the very entry that the product adds: an uninstallation that is
// repeated takes that one as well, because the records don't say how often it is to be there.
void forgetEqualEntries(const ProductCase& product, MachineState& state);
// One line for each difference. Directories are compared by what they hold: an empty one may go with the
// product's.
std::vector<std::string> differences(const MachineState& expected, const MachineState& found);
