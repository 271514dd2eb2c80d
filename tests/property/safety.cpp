#include "safety.h"

#include <algorithm>

#include "base/text_functions.h"
#include "user_acts.h"

namespace {

const Item* itemAt(const ProductCase& product, const std::string& path) {
    const auto found =
        std::ranges::find_if(product.items, [&](const Item& item) { return placeOf(item) == path; });
    return found == product.items.end() ? nullptr : &*found;
}

// Without its archive a file with a backup may go as well.
bool mayGo(const ProductCase& product, const Item* item) {
    if (item == nullptr || isRefused(*item)) {
        return false;
    }
    switch (item->kind) {
        case ItemKind::kFile:
            return !item->option || product.course == Course::kLoseArchive;
        case ItemKind::kRemoveFile:
        case ItemKind::kCopyFile:
        case ItemKind::kCreateFile:
            return true;
        default:
            return false;
    }
}

// A file of the user with a change of the product in it still has each of the user's lines, in their order.
bool holdsLines(const std::string& found, const std::string& earlier, const std::string& exception) {
    const std::vector<std::string> lines = OUtils::splitText(found, '\n');
    const std::vector<std::string> wanted = OUtils::splitText(earlier, '\n');
    auto at = lines.begin();
    for (const std::string& line : wanted) {
        if (!exception.empty() && line.starts_with(exception)) {
            continue;  // the line that the product replaces
        }
        at = std::find(at, lines.end(), line);
        if (at == lines.end()) {
            return false;
        }
        ++at;
    }
    return true;
}

// What the installation and the user may have made of a file that was there.
bool isAllowed(const Item* item, const std::string& earlier, const std::string& found) {
    if (found == earlier || item == nullptr) {
        return found == earlier;
    }
    if (item->later == Trap::kLink && found == linkTo(victimOf(*item, kLater))) {
        return true;
    }
    switch (item->kind) {
        case ItemKind::kFile:
            return !isRefused(*item) &&
                   (found == installedContentOf(*item) || (item->touched && found == kUsersContent));
        case ItemKind::kIni:
            return holdsLines(found, earlier, "key=");
        case ItemKind::kModifyFile:
            return holdsLines(found, earlier, "");
        case ItemKind::kCopyFile:
        case ItemKind::kCreateFile:
            return true;
        default:
            return false;
    }
}

// One byte of the archive may have been one of a content. Then the uninstallation says so.
bool isOneByteOff(const std::string& content, const std::string& other) {
    int different = content.size() == other.size() ? 0 : 2;
    for (std::size_t i = 0; different < 2 && i < content.size(); ++i) {
        different += content[i] == other[i] ? 0 : 1;
    }
    return different == 1;
}

void compareFiles(const MachineState& start, const ProductCase& product, const MachineState& found,
                  bool isUsed, std::vector<std::string>& losses) {
    for (const auto& [path, content] : start.files) {
        const auto at = found.files.find(path);
        const Item* item = itemAt(product, path);
        if (at == found.files.end()) {
            if (!mayGo(product, item)) {
                losses.push_back("A file of the user is lost: " + path);
            }
        } else if (!isAllowed(item, content, at->second) &&
                   !(product.course == Course::kDamageArchive && isOneByteOff(content, at->second))) {
            losses.push_back("A file of the user was changed: " + path);
        }
    }
    if (isUsed && product.foreignFile && !found.files.contains(kForeignFile)) {
        losses.push_back("A file that the user put there is lost: " + std::string(kForeignFile));
    }
}

void compareEnvironment(const MachineState& start, const ProductCase& product, const MachineState& found,
                        std::vector<std::string>& losses) {
    for (const Item& item : product.items) {
        const auto earlier = start.environment.find(item.name("VAR"));
        const bool isReplaced = item.variant % 3 == 0;
        if (item.kind != ItemKind::kEnvironment || earlier == start.environment.end() || isReplaced) {
            continue;
        }
        const auto at = found.environment.find(item.name("VAR"));
        for (const std::string& entry : earlier->second) {
            const auto count = [&](const std::vector<std::string>& list) {
                return std::count(list.begin(), list.end(), entry);
            };
            if (at == found.environment.end() || count(at->second) < count(earlier->second)) {
                losses.push_back(entry.starts_with('(')
                                     ? "The type of " + item.name("VAR") + " is no longer " + entry
                                     : "An entry of " + item.name("VAR") + " is lost: " + entry);
            }
        }
    }
}

// Keys and values beside those that the product writes or removes.
void compareRegistry(const MachineState& start, const ProductCase& product, const MachineState& found,
                     std::vector<std::string>& losses) {
    for (const auto& [name, value] : start.registry) {
        const bool isProducts = std::ranges::any_of(product.items, [&, &name = name](const Item& item) {
            return name == registryKeyOf(item) + ":name" ||
                   (item.kind == ItemKind::kRemoveRegistryKey && name == registryKeyOf(item));
        });
        const auto at = found.registry.find(name);
        if (!isProducts && (at == found.registry.end() || at->second != value)) {
            losses.push_back("A key or value of the user is lost: " + name);
        }
    }
}

}  // namespace

std::vector<std::string> lossesOfUser(const MachineState& start, const ProductCase& product,
                                      const MachineState& found, bool isUsed) {
    std::vector<std::string> losses;
    compareFiles(start, product, found, isUsed, losses);
    compareEnvironment(start, product, found, losses);
    compareRegistry(start, product, found, losses);
    return losses;
}

std::vector<std::string> missingParts(MemoryPlatform& machine, const ProductCase& product) {
    std::vector<std::string> missing;
    for (const Item& item : product.items) {
        const std::string path = filePathOf(item);
        if (item.kind == ItemKind::kFile && !isRefused(item) &&
            machine.files.content(path) != installedContentOf(item)) {
            missing.push_back("The installation tells of success and left out: " + path);
        }
    }
    return missing;
}
