#include "expected_end.h"

#include <algorithm>
#include <array>

#include "user_acts.h"

namespace {

// The directories of items, all made by the product unless they were there at first.
constexpr std::array kMadeDirectories = {"/product", "/product/sub", "/data/made", "/data/made/here"};

// It comes back, or nothing has happened to it. Without its archive a file that is known to be what was
// installed goes instead.
bool isKept(const Item& file, Course course) {
    const bool isKnown = !file.touched && file.later != Trap::kLink;
    return file.option && !(course == Course::kLoseArchive && isKnown);
}

// What a repair finds in the place of a file that may have been the user's counts as his.
std::string newContentOf(const Item& file, Course course) {
    const bool isBroken = course == Course::kRepair && isBrokenInRepair(file) && !isSafeFromDamage(file);
    return isBroken ? kBrokenContent : installedContentOf(file);
}

// A file has the rights of the one that it takes the place of. Where that was deleted, those of a new one.
void expectRights(MachineState& state, const std::string& path, const Item& file, Course course) {
    const bool isNew = course == Course::kRepair && !isBrokenInRepair(file) && !isSafeFromDamage(file);
    if (isNew || !state.files.contains(path) || state.files[path].starts_with(linkTo(""))) {
        state.rights.erase(path);
    }
}

// Where a link was before, one that is there now can't be the product's. Another installation found the
// product's file there and knows nothing of the link.
bool isUsersLink(const Item& file, Course course) {
    const bool isInstalledOnce = course != Course::kInstallAgain && course != Course::kRepair;
    return isInstalledOnce && file.atFirst == Trap::kLink && file.later == Trap::kLink;
}

// BackupExisting brings the earlier content back, unless the user has changed the file; without it the file
// goes, whatever was there.
void expectFile(MachineState& state, const Item& item, Course course) {
    const std::string path = placeOf(item);
    if (isRefused(item)) {
        return;
    }
    if (!isKept(item, course) && !isUsersLink(item, course)) {
        state.files.erase(path);
    } else if (item.later == Trap::kLink) {
        state.files[path] = linkTo(victimOf(item, kLater));
    } else if (item.touched) {
        state.files[path] = kUsersContent;
    } else if (!state.files.contains(path)) {
        state.files[path] = newContentOf(item, course);
    }
    expectRights(state, path, item, course);
}

void expectEnvironment(MachineState& state, const Item& item) {
    const bool isReplaced = item.variant % 3 == 0;
    if (!item.touched) {
        return;
    }
    // The undo of a replacement or creation takes the user's addition along.
    if (!isReplaced) {
        std::vector<std::string>& entries = state.environment[item.name("VAR")];
        if (entries.empty()) {
            entries.push_back("(plain)");
        }
        entries.insert(entries.begin() + 1, entryInFrontOf(item));
        entries.push_back(entryAfter(item));
    }
}

// The pattern takes the entries themselves, and never what they lead to.
void expectCleaning(MachineState& state, const Item& item) {
    const std::string place = placeOf(item);
    if (item.later == Trap::kLinkedPlace) {
        state.files[place] = linkTo(victimOf(item, kLater) + ".dir");
        return;
    }
    const bool keepsDirectories = !item.option;
    if (item.variant % 2 != 0) {
        state.files[place + "/keep.dat"] = kKeptContent;
    }
    if (keepsDirectories || item.later == Trap::kOddName) {
        state.directories.insert({place, place + "/sub"});
    } else if (item.variant % 2 != 0) {
        state.directories.insert(place);
    }
}

void expectItem(MachineState& state, const Item& item, const ProductCase& product) {
    switch (item.kind) {
        case ItemKind::kFile:
            expectFile(state, item, product.course);
            break;
        case ItemKind::kEnvironment:
            expectEnvironment(state, item);
            break;
        case ItemKind::kFirewallPort:
            // A port that was open already is taken for the product's own.
            if (!product.firewallOff && item.variant % 3 != 2) {
                state.firewall.erase(std::to_string(1000 + item.number) + " tcp");
            }
            break;
        case ItemKind::kRegistryValue:
        case ItemKind::kRemoveRegistryValue:
            state.registry.erase(registryKeyOf(item) + ":name");
            break;
        case ItemKind::kRemoveRegistryKey:
            state.registry.erase(registryKeyOf(item));
            break;
        case ItemKind::kRemoveFile:
        case ItemKind::kCopyFile:
        case ItemKind::kCreateFile:
            state.files.erase(placeOf(item));
            break;
        case ItemKind::kCleaning:
            expectCleaning(state, item);
            break;
        default:
            break;
    }
}

bool isIn(const std::string& path, const std::string& directory) {
    return path.starts_with(directory + "/");
}

}  // namespace

MachineState expectedEnd(const MachineState& start, const ProductCase& product) {
    MachineState state = start;
    for (const Item& item : product.items) {
        expectItem(state, item, product);
    }
    if (product.foreignFile) {
        state.files[kForeignFile] = kForeignContent;
    }
    return state;
}

std::set<std::string> filesThatStay(const MachineState& start, const ProductCase& product) {
    std::set<std::string> found;
    for (const auto& [path, content] : expectedEnd(start, product).files) {
        const bool keepsDirectory =
            std::ranges::any_of(kMadeDirectories, [&, &path = path](const std::string& directory) {
                return isIn(path, directory) && !start.directories.contains(directory);
            });
        if (keepsDirectory) {
            found.insert(path);
        }
    }
    return found;
}

std::set<std::string> filesThatComeBack(const MachineState& start, const ProductCase& product) {
    std::set<std::string> found;
    const std::set<std::string> all = filesThatStay(start, product);
    for (const Item& item : product.items) {
        const bool isArchived = product.course == Course::kRepair && isBrokenInRepair(item);
        if (item.kind == ItemKind::kFile && item.option && isArchived && all.contains(placeOf(item))) {
            found.insert(placeOf(item));
        }
    }
    return found;
}

void expectNoArchive(const ProductCase& product, MachineState& state) {
    for (const Item& item : product.items) {
        const bool isFile = item.kind == ItemKind::kFile && isReached(product, item) && !isRefused(item);
        const auto at = state.files.find(isFile ? placeOf(item) : "");
        if (at != state.files.end() && !isKept(item, Course::kLoseArchive) &&
            at->second == installedContentOf(item)) {
            state.rights.erase(at->first);
            state.files.erase(at);
        }
    }
}

bool hasTrappedEdit(const ProductCase& product) {
    return std::ranges::any_of(product.items, [&](const Item& item) {
        const bool isEdit = item.kind == ItemKind::kIni || item.kind == ItemKind::kModifyFile;
        return isEdit && item.later == Trap::kLink && isReached(product, item);
    });
}

void forgetEqualEntries(const ProductCase& product, MachineState& state) {
    for (const Item& item : product.items) {
        if (item.kind == ItemKind::kEnvironment && item.earlier && holdsEqualEntry(item)) {
            state.environment.erase(item.name("VAR"));
        }
    }
}
