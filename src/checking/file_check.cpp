#include "checking/file_check.h"

#include <string>
#include <unordered_map>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/packed_files.h"
#include "checking/path_values.h"
#include "checking/quoted_text.h"
#include "platform/file_system.h"
#include "support/utilities.h"

namespace {

using Kind = FileSource::Kind;

// An installed file of this size or more is never expanded.
constexpr std::int64_t kExpandedFileLimit = 8192;

class FileCheck {
public:
    FileCheck(const CheckContext& context, const PackedFiles& files, const PathValues& paths)
        : context_(context), files_(files), paths_(paths) {}

    void run() {
        for (const PackedFile& file : files_.all()) {
            checkSource(file);
            checkDestination(file);
            checkExpansion(file);
        }
    }

private:
    void checkSource(const PackedFile& file) {
        if (file.source.kind == Kind::kOutside) {
            context_.addAtText("file-outside", file.node,
                               inQuotes(file.text) + " leads out of the root, or has a colon");
        } else if (file.source.kind == Kind::kMissing && !file.isOptional) {
            context_.addAtText("file-missing", file.node,
                               "there is no file " + inQuotes(file.source.path) + " below the root");
        }
    }

    // Two files of one place may be those of two systems; only what is written the same surely excludes
    // nothing.
    void checkDestination(const PackedFile& file) {
        if (!file.isInstalled() || file.isOptional) {
            return;
        }
        const std::string path = paths_.resolve(file.dest) + "/" + std::string(file.name);
        const std::string place = context_.targets().windows ? OUtils::toLowerAscii(path) : path;
        const auto [first, isNew] = places_.try_emplace(place + '\n' + conditionsOf(file), &file);
        if (!isNew) {
            context_.addAtElement(
                "file-same-destination", file.node,
                inQuotes(file.text) + " is installed in the place of " + inQuotes(first->second->text));
        }
    }

    std::string conditionsOf(const PackedFile& file) const {
        return std::string(context_.attribute(file.fileSet, "Condition").value_or("")) + '\n' +
               std::string(context_.attribute(file.node, "Condition").value_or(""));
    }

    void checkExpansion(const PackedFile& file) {
        if (!file.isInstalled() || file.source.kind != Kind::kRoot ||
            !context_.attribute(file.node, "ExpandVarsInFile")) {
            return;
        }
        std::string content;
        if (file.source.size >= kExpandedFileLimit) {
            context_.addAtAttribute("file-not-expanded", file.node, "ExpandVarsInFile",
                                    inQuotes(file.text) + " has " + std::to_string(file.source.size) +
                                        " bytes: from 8192 on, a file is installed unchanged");
        } else if (OUtils::readWholeFile(files_.pathOf(file.source), content, context_.files()) == 0 &&
                   content.find('\0') != std::string::npos) {
            context_.addAtAttribute(
                "file-not-expanded", file.node, "ExpandVarsInFile",
                "what follows the first zero byte of " + inQuotes(file.text) + " is lost");
        }
    }

    const CheckContext& context_;
    const PackedFiles& files_;
    const PathValues& paths_;
    std::unordered_map<std::string, const PackedFile*> places_;
};

}  // namespace

void checkFiles(const CheckContext& context, const PackedFiles& files, const PathValues& paths) {
    FileCheck(context, files, paths).run();
}
