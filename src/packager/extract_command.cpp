#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/text_functions.h"
#include "packager/commands.h"
#include "packager/extraction_tree.h"
#include "packager/make_directories.h"
#include "packager/package_file_reader.h"
#include "support/utilities.h"

namespace {

// A name from a package must be a plain name that leads to no other directory.
bool isSafeName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\:") == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

std::vector<std::int32_t> chooseEntries(const Cabinet& cabinet, const std::vector<std::string>& aliases) {
    std::vector<std::int32_t> chosen;
    for (const std::string& alias : aliases) {
        const std::optional<std::int32_t> index = cabinet.findAlias(alias);
        if (!index) {
            fail("the package holds no file with the alias \"" + alias + "\": packager list shows them all");
        }
        chosen.push_back(*index);
    }
    for (std::int32_t i = 0; aliases.empty() && i < cabinet.getCount(); ++i) {
        chosen.push_back(i);
    }
    return chosen;
}

// The names of the files in the target. Of several files with one name the first keeps it, unless all are
// equal; the others get their aliases. Case is ignored, as some systems do.
class TargetNames {
public:
    explicit TargetNames(const Cabinet& cabinet) : cabinet_(cabinet) {}

    // Empty when the same content is already there under the name.
    std::string nameOf(std::int32_t index) {
        const CabinetEntry& entry = cabinet_.entry(index);
        for (const std::string_view candidate : {entry.name(), entry.alias()}) {
            if (!isSafeName(candidate)) {
                fail("the name \"" + std::string(candidate) +
                     "\" in the package could lead out of the target: nothing more is extracted");
            }
            const auto [known, isNew] = taken_.try_emplace(OUtils::toLowerAscii(candidate), index);
            if (isNew) {
                return std::string(candidate);
            }
            if (isSameContent(known->second, index)) {
                return {};
            }
        }
        fail("several files of the package have the name \"" + std::string(entry.name()) +
             "\": extract them one by one");
    }

private:
    bool isSameContent(std::int32_t a, std::int32_t b) const {
        return cabinet_.entry(a).digest() == cabinet_.entry(b).digest() &&
               cabinet_.entry(a).fileSize() == cabinet_.entry(b).fileSize();
    }

    const Cabinet& cabinet_;
    std::map<std::string, std::int32_t> taken_;
};

void makeDirectory(const std::string& path, platform::FileSystem& files) {
    std::string failed;
    if (makeDirectories(path, files, failed) != 0) {
        fail(path + ": the directory can't be made");
    }
}

// The directories between the target and the file. What lies in their places may lead elsewhere.
void makeTreeDirectories(const std::string& target, std::string_view path, platform::FileSystem& files) {
    for (std::size_t end = path.find('/'); end != std::string_view::npos; end = path.find('/', end + 1)) {
        const std::string directory = target + "/" + std::string(path.substr(0, end));
        if (files.kindOf(directory) == platform::PathKind::kNothing) {
            files.createDirectory(directory);
        }
        if (files.kindOf(directory) != platform::PathKind::kDirectory) {
            fail(directory +
                 ": the directory can't be made, or there is something else: extract to an empty one");
        }
    }
}

void writeEntry(const Cabinet& cabinet, std::int32_t index, const std::string& path,
                platform::FileSystem& files) {
    if (!hasRightDigest(cabinet, index)) {
        fail("the file \"" + std::string(cabinet.entry(index).alias()) + "\" is damaged in the package");
    }
    const int status = OUtils::writeWholeFile(path, *cabinet.entryContent(index), files);
    if (status != 0) {
        fail(path + " can't be written: " + OUtils::writingErrorText(status));
    }
}

// The number of files that were written.
std::size_t extractTree(const Cabinet& cabinet, const std::vector<std::int32_t>& chosen,
                        const std::string& target, PackagerOutput& output, platform::FileSystem& files) {
    const PackedDescription description(cabinet);
    ExtractionTree tree(cabinet, description);
    for (const std::int32_t index : chosen) {
        tree.add(index);
    }
    for (const std::string& remark : tree.remarks()) {
        output.warn("packager: warning: " + printable(remark));
    }
    std::size_t done = 0;
    for (const ExtractedFile& file : tree.files()) {
        makeTreeDirectories(target, file.path, files);
        const std::string path = target + "/" + file.path;
        writeEntry(cabinet, file.index, path, files);
        if (file.isExecutable && files.makeExecutable(path) != 0) {
            fail(path + ": this file can't be made a program");
        }
        output.progress("Extracting", static_cast<int>(++done * 100 / tree.files().size()));
    }
    return done;
}

// Returns the number of files that were asked for.
std::size_t extractSideBySide(const Cabinet& cabinet, const std::vector<std::int32_t>& chosen,
                              const std::string& target, PackagerOutput& output,
                              platform::FileSystem& files) {
    TargetNames names(cabinet);
    const std::string start = target + "/";
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const std::string name = names.nameOf(chosen[i]);
        if (!name.empty()) {
            writeEntry(cabinet, chosen[i], start + name, files);
        }
        output.progress("Extracting", static_cast<int>((i + 1) * 100 / chosen.size()));
    }
    return chosen.size();
}

}  // namespace

void runExtract(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    PackageFileReader package(files);
    package.locate(commandLine.package);
    package.load();
    const Cabinet& cabinet = package.cabinet();
    const std::vector<std::int32_t> chosen = chooseEntries(cabinet, commandLine.aliases);
    makeDirectory(commandLine.target, files);
    const auto extract = commandLine.tree ? extractTree : extractSideBySide;
    const std::size_t count = extract(cabinet, chosen, commandLine.target, output, files);
    output.print(std::to_string(count) + " files extracted to " + printable(commandLine.target));
}
