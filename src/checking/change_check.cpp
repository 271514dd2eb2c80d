#include "checking/change_check.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/condition_scope.h"
#include "checking/made_directories.h"
#include "checking/packed_files.h"
#include "checking/path_values.h"
#include "checking/quoted_text.h"
#include "checking/references.h"
#include "checking/removed_paths.h"

namespace {

// A key of the registry: hive and path, with `/` and without regard to case.
struct RegistryKey {
    std::string_view place;
    std::string path;
};

bool isSwitchedOff(std::optional<std::string_view> condition) {
    return condition && (*condition == "0" || *condition == "1==0" || *condition == "0==1");
}

class ChangeCheck {
public:
    ChangeCheck(const CheckContext& context, const PackedFiles& files, const PathValues& paths)
        : context_(context),
          files_(files),
          paths_(paths),
          made_(context, files, paths),
          removed_(context, paths) {
        for (const PackedFile& file : files.all()) {
            if (file.isInstalled()) {
                directories_.insert(paths.resolve(file.dest));
                installed_.insert(paths.resolve(std::string(file.dest) + "/" + std::string(file.name)));
            }
        }
        for (const std::string_view removal : {"RemoveValue", "RemoveKey"}) {
            for (const std::int32_t node : context.nodesOf(removal)) {
                removedKeys_.push_back(keyOf(node));
            }
        }
    }

    void run() {
        for (const std::int32_t node : context_.nodesOf("CreateFile")) {
            checkCreatedFile(node);
        }
        for (const std::int32_t node : context_.nodesOf("CopyFile")) {
            checkCopy(node);
        }
        for (const std::int32_t node : context_.nodesOf("Add@IniFiles")) {
            checkIniFile(node);
        }
        for (const std::string_view addition : {"AddValue", "AddKey"}) {
            for (const std::int32_t node : context_.nodesOf(addition)) {
                checkRegistry(node);
            }
        }
    }

private:
    // What an uninstallation makes, nobody takes away.
    bool isOfInstallation(std::int32_t node) const {
        return context_.enclosing(node, "PreUninstall") < 0 &&
               context_.enclosing(node, "UninstallDialogs") < 0;
    }

    void checkCreatedFile(std::int32_t node) {
        const PackedFile* const file = files_.findAlias(context_.text(node));
        const std::string_view dest = context_.attribute(node, "Dest").value_or("");
        if (file == nullptr || dest.empty() || context_.attribute(node, "StripExeExt")) {
            return;
        }
        checkFile(node, paths_.resolve(std::string(dest) + "/" + std::string(file->name)));
    }

    void checkCopy(std::int32_t node) {
        const std::string_view dest = context_.attribute(node, "Dest").value_or("");
        if (!dest.empty() && !OUtils::isSeparator(dest.back())) {
            checkFile(node, paths_.resolve(dest));
        }
    }

    void checkFile(std::int32_t node, const std::string& path) {
        if (!isOfInstallation(node) || isTakenAway(path)) {
            return;
        }
        if (isSurelyDone(node) && made_.isMade(directoryOf(path))) {
            context_.addAtElement("file-not-removed", node,
                                  "nothing removes the file " + inQuotes(path) +
                                      ", so its directory stays and the uninstallation fails");
        } else {
            context_.addAtElement("change-without-undo", node,
                                  "the uninstallation leaves the file " + inQuotes(path));
        }
    }

    // Other containers wait for a page or a trigger.
    bool isSurelyDone(std::int32_t node) const {
        return !hasConditionAround(context_, node) && context_.enclosing(node, "AdditionalInstall") >= 0;
    }

    // Only where it lies among the files of the product is a file that is there in the end the product's own.
    void checkIniFile(std::int32_t node) {
        const std::string path = paths_.resolve(context_.attribute(node, "FileName").value_or(""));
        if (isAmongFiles(path) && !isTakenAway(path) && reportedIniFiles_.insert(path).second) {
            context_.addAtAttribute(
                hasConditionAround(context_, node) || !made_.isMade(directoryOf(path))
                    ? FindingCode("change-without-undo")
                    : FindingCode("file-not-removed"),
                node, "FileName",
                "the uninstallation takes the entries away, but leaves the file " + inQuotes(path),
                "Name the file in UninstallWildcards, or install it by an FN.");
        }
    }

    bool isTakenAway(const std::string& path) const {
        return installed_.contains(path) || removed_.mayContain(path);
    }

    bool isAmongFiles(std::string_view path) const {
        for (std::string_view directory = directoryOf(path); directory.size() > 1;
             directory = directoryOf(directory)) {
            if (directories_.contains(std::string(directory))) {
                return true;
            }
        }
        return false;
    }

    void checkRegistry(std::int32_t node) {
        const RegistryKey key = keyOf(node);
        if (!isSwitchedOff(context_.attribute(node, "ActionLog")) || !isOfInstallation(node) ||
            !bracketReferences(key.path).empty()) {
            return;
        }
        const bool isRemoved = std::ranges::any_of(
            removedKeys_, [&](const RegistryKey& removed) { return isSameKey(removed, key); });
        if (!isRemoved) {
            context_.addAtElement("change-without-undo", node,
                                  "no record is kept of this change of the registry, and nothing removes it",
                                  "Leave ActionLog out, or remove it in a container PreUninstall.");
        }
    }

    RegistryKey keyOf(std::int32_t node) const {
        const std::string path(context_.attribute(node, "Path").value_or(""));
        return {context_.attribute(node, "Place").value_or(""),
                OUtils::toLowerAscii(OUtils::withSeparators(path, '/'))};
    }

    // Removing a key takes what is above it as well.
    static bool isSameKey(const RegistryKey& removed, const RegistryKey& added) {
        return removed.place == added.place &&
               (removed.path.starts_with(added.path) || added.path.starts_with(removed.path) ||
                !bracketReferences(removed.path).empty());
    }

    const CheckContext& context_;
    const PackedFiles& files_;
    const PathValues& paths_;
    MadeDirectories made_;
    RemovedPaths removed_;
    std::unordered_set<std::string> directories_;  // of installed files
    std::unordered_set<std::string> installed_;
    std::unordered_set<std::string> reportedIniFiles_;
    std::vector<RegistryKey> removedKeys_;
};

}  // namespace

void checkChanges(const CheckContext& context, const PackedFiles& files, const PathValues& paths) {
    if (isMeantToBeUninstalled(context)) {
        ChangeCheck(context, files, paths).run();
    }
}
