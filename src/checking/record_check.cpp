#include "checking/record_check.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/made_directories.h"
#include "checking/packed_files.h"
#include "checking/path_values.h"
#include "checking/quoted_text.h"
#include "checking/removed_paths.h"
#include "checking/shared_directories.h"

namespace {

using Choice = PathValues::Choice;
using Files = std::vector<const PackedFile*>;

constexpr std::string_view kWritten[] = {"InstallLogFile", "InstallBackupFile"};
constexpr std::string_view kInstalled[] = {"UninstallXmlFile", "UninstallCmd"};

class RecordCheck {
public:
    RecordCheck(const CheckContext& context, const PackedFiles& files, const PathValues& paths)
        : context_(context),
          files_(files),
          paths_(paths),
          unchanged_(paths.unchanged()),
          made_(context, files, paths) {
        for (const PackedFile& file : files.all()) {
            if (file.isInstalled()) {
                byName_[OUtils::toLowerAscii(file.name)].push_back(&file);
            }
        }
    }

    void run() {
        checkLog();
        checkArchive();
        for (const std::string_view record : kWritten) {
            checkPlace(context_.firstOf(record));
            checkDirectory(context_.firstOf(record));
        }
        checkRemoval();
        for (const std::string_view record : kInstalled) {
            checkInstalled(context_.firstOf(record));
        }
    }

private:
    void checkLog() {
        if (context_.firstOf("InstallLogFile") < 0 && isMeantToBeUninstalled(context_)) {
            context_.addAtElement("record-missing", nearest({"Uninstall", "Installation"}),
                                  "no log is kept, so the product can't be uninstalled");
        }
    }

    // Only the files that ask for it go into the archive.
    void checkArchive() {
        if (context_.firstOf("InstallBackupFile") >= 0) {
            return;
        }
        const auto asks = std::ranges::find_if(files_.all(), [this](const PackedFile& file) {
            return file.isInstalled() && context_.attribute(file.node, "BackupExisting");
        });
        if (asks != files_.all().end()) {
            context_.addAtAttribute(
                "record-backup-missing", asks->node, "BackupExisting",
                "there is no archive in which the earlier " + inQuotes(asks->name) + " could be kept");
        }
    }

    std::int32_t nearest(std::initializer_list<std::string_view> types) const {
        for (const std::string_view type : types) {
            if (context_.firstOf(type) >= 0) {
                return context_.firstOf(type);
            }
        }
        return 0;
    }

    void checkPlace(std::int32_t node) {
        if (node < 0) {
            return;
        }
        const std::string path = paths_.resolve(context_.text(node));
        const std::string directory(directoryOf(path));
        const bool isOfFiles = std::ranges::any_of(files_.all(), [&](const PackedFile& file) {
            return file.isInstalled() && paths_.resolve(file.dest) == directory;
        });
        if (!isOfFiles && isSharedDirectory(directory, paths_) && !isNoPlaceForFiles(directory, paths_)) {
            context_.addAtText("record-outside", node,
                               inQuotes(context_.text(node)) + " lies among the files of other programs");
        }
    }

    // An installation writes its records without making a directory for them.
    void checkDirectory(std::int32_t node) {
        if (node >= 0 && made_.isMissing(directoryOf(unchanged_.resolve(context_.text(node))))) {
            context_.addAtText("record-no-directory", node,
                               "nothing makes the directory of " + inQuotes(context_.text(node)) +
                                   ", so the installation fails");
        }
    }

    // No record of the log covers the log itself, nor the archive.
    void checkRemoval() {
        if (context_.firstOf("UninstallDialogs") < 0 || context_.firstOf("InstallLogFile") < 0) {
            return;
        }
        const RemovedPaths removed(context_, paths_);
        for (const std::string_view record : kWritten) {
            const std::int32_t node = context_.firstOf(record);
            if (node >= 0 && !removed.mayContain(paths_.resolve(context_.text(node)))) {
                addNotRemoved(node);
            }
        }
    }

    void addNotRemoved(std::int32_t node) {
        const std::string text = "no clean-up deletes " + inQuotes(context_.text(node));
        const std::string path = unchanged_.resolve(context_.text(node));
        if (made_.isMissing(directoryOf(path))) {
            return;
        }
        if (made_.isMade(directoryOf(path))) {
            context_.addAtText("record-not-removed", node,
                               text + ", so its directory stays and the uninstallation fails");
        } else {
            context_.addAtText("record-left", node, text + ", so it stays when the product is uninstalled");
        }
    }

    void checkInstalled(std::int32_t node) {
        if (node < 0 || !files_.areAllKnown()) {
            return;
        }
        const std::string_view text = context_.text(node);
        const std::vector<Choice> choices = paths_.choicesOf(text);
        std::vector<const Choice*> missing;
        for (const Choice& choice : choices) {
            const Files installed = filesAt(text, choice);
            if (installed.empty() && !hasReference(nameOf(text, choice))) {
                missing.push_back(&choice);
            }
            checkProgram(node, installed);
        }
        if (!missing.empty() && (missing.size() == choices.size() || isSurelyChosen(*missing.front()))) {
            addNotInstalled(node, paths_.resolve(text, *missing.front()));
        } else if (missing.empty() && isElsewhereAtFirst(text)) {
            addNotInstalled(node, unchanged_.resolve(text));
        }
    }

    void addNotInstalled(std::int32_t node, const std::string& path) {
        const std::string_view text = context_.text(node);
        context_.addAtText("record-not-installed", node,
                           "no FN installs " + inQuotes(text) +
                               (hasReference(text) ? ", which may be " + inQuotes(path) : ""));
    }

    // Whether no file has this path where users leave what they are asked for as it is.
    bool isElsewhereAtFirst(std::string_view text) const {
        const std::string path = folded(unchanged_.resolve(text));
        const auto named = byName_.find(OUtils::toLowerAscii(OUtils::lastPathComponent(path)));
        return !path.empty() && !hasReference(path) &&
               (named == byName_.end() || std::ranges::none_of(named->second, [&](const PackedFile* file) {
                    const std::string place =
                        unchanged_.resolve(std::string(file->dest) + "/" + std::string(file->name));
                    return matchPaths(path, folded(place)) != PathMatch::kDifferent;
                }));
    }

    // Values of one variable are each for a case that occurs; those of several may never come together. A
    // description for two systems may be checked for one.
    bool isSurelyChosen(const Choice& choice) const {
        return choice.size() == 1 && context_.targets().windows && context_.targets().linux;
    }

    std::string nameOf(std::string_view text, const Choice& choice) const {
        return std::string(OUtils::lastPathComponent(paths_.resolve(text, choice)));
    }

    // Those that are, or may be, at this path.
    Files filesAt(std::string_view text, const Choice& choice) const {
        const std::string path = folded(paths_.resolve(text, choice));
        const auto named = byName_.find(OUtils::toLowerAscii(nameOf(text, choice)));
        Files found;
        for (const PackedFile* const file : named == byName_.end() ? Files() : named->second) {
            const std::string place =
                folded(paths_.resolve(std::string(file->dest) + "/" + std::string(file->name), choice));
            if (matchPaths(path, place) != PathMatch::kDifferent) {
                found.push_back(file);
            }
        }
        return found;
    }

    std::string folded(const std::string& path) const {
        return context_.targets().linux ? path : OUtils::toLowerAscii(path);
    }

    void checkProgram(std::int32_t node, const Files& installed) {
        if (context_.typeOf(node) != "UninstallCmd" || !context_.targets().linux) {
            return;
        }
        for (const PackedFile* const file : installed) {
            if (!context_.attribute(file->node, "Executable") &&
                !OUtils::toLowerAscii(file->name).ends_with(".exe")) {
                context_.addAtElement("record-not-program", file->node,
                                      "the uninstaller " + inQuotes(file->name) +
                                          " isn't marked as a program, which it must be on Linux");
            }
        }
    }

    const CheckContext& context_;
    const PackedFiles& files_;
    const PathValues& paths_;
    PathValues unchanged_;
    MadeDirectories made_;
    std::unordered_map<std::string, Files> byName_;
};

}  // namespace

void checkRecords(const CheckContext& context, const PackedFiles& files, const PathValues& paths) {
    RecordCheck(context, files, paths).run();
}
