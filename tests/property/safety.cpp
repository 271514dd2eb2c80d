#include "safety.h"

#include <algorithm>

#include "base/text_functions.h"

namespace {

constexpr const char* kUsersContent = "changed by the user";

using Contents = std::vector<std::string>;

const Item* fileAt(const ProductCase& product, const std::string& path) {
    for (const Item& item : product.items) {
        if (item.kind == ItemKind::kFile && filePathOf(item) == path) {
            return &item;
        }
    }
    return nullptr;
}

bool mayGo(const ProductCase& product, const std::string& path) {
    return std::any_of(product.items.begin(), product.items.end(), [&](const Item& item) {
        const bool hasBackup = item.option && product.course != Course::kLoseArchive;
        const bool isFileWithoutBackup =
            item.kind == ItemKind::kFile && !hasBackup && filePathOf(item) == path;
        return isFileWithoutBackup || (item.kind == ItemKind::kRemoveFile && item.name("/data/gone") == path);
    });
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

bool isAllowed(const ProductCase& product, const std::string& path, const std::string& earlier,
               const std::string& found) {
    if (const Item* item = fileAt(product, path)) {
        return found == earlier || found == installedContentOf(*item) ||
               (item->touched && found == kUsersContent);
    }
    if (path.ends_with(".ini")) {
        return holdsLines(found, earlier, "key=");
    }
    return path.ends_with(".txt") ? holdsLines(found, earlier, "") : found == earlier;
}

void compareFiles(const MachineState& start, const ProductCase& product, const MachineState& found,
                  bool isUsed, std::vector<std::string>& losses) {
    for (const auto& [path, content] : start.files) {
        const auto at = found.files.find(path);
        if (at == found.files.end()) {
            if (!mayGo(product, path)) {
                losses.push_back("A file of the user is lost: " + path);
            }
        } else if (!isAllowed(product, path, content, at->second)) {
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

}  // namespace

std::vector<std::string> lossesOfUser(const MachineState& start, const ProductCase& product,
                                      const MachineState& found, bool isUsed) {
    std::vector<std::string> losses;
    compareFiles(start, product, found, isUsed, losses);
    compareEnvironment(start, product, found, losses);
    return losses;
}

std::vector<std::string> missingParts(FakePlatform& machine, const ProductCase& product) {
    std::vector<std::string> missing;
    for (const Item& item : product.items) {
        const std::string path = filePathOf(item);
        if (item.kind == ItemKind::kFile && machine.files.content(path) != installedContentOf(item)) {
            missing.push_back("The installation tells of success and left out: " + path);
        }
    }
    return missing;
}
