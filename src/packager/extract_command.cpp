#include <map>
#include <vector>

#include "base/errors.h"
#include "base/text_functions.h"
#include "packager/commands.h"
#include "packager/package_file_reader.h"
#include "support/utilities.h"

namespace {

// A name out of a package may only be a name: nothing that leads to another place.
bool isSafeName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\:") == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

std::vector<std::int32_t> chooseEntries(const Cabinet& cabinet, const std::vector<std::string>& aliases) {
    std::vector<std::int32_t> chosen;
    for (const std::string& alias : aliases) {
        const std::int32_t index = cabinet.findAlias(alias);
        if (index < 0) {
            throw InstallerError(
                "the package holds no file with the alias \"%s\": packager list shows them all",
                alias.c_str());
        }
        chosen.push_back(index);
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
                throw InstallerError(
                    "the name \"%s\" in the package could lead out of the target: nothing more is "
                    "extracted",
                    std::string(candidate).c_str());
            }
            const auto [known, isNew] = taken_.try_emplace(OUtils::toLowerAscii(candidate), index);
            if (isNew) {
                return std::string(candidate);
            }
            if (isSameContent(known->second, index)) {
                return {};
            }
        }
        throw InstallerError("several files of the package have the name \"%s\": extract them one by one",
                             std::string(entry.name()).c_str());
    }

private:
    bool isSameContent(std::int32_t a, std::int32_t b) const {
        return cabinet_.entry(a).digest() == cabinet_.entry(b).digest() &&
               cabinet_.entry(a).fileSize() == cabinet_.entry(b).fileSize();
    }

    const Cabinet& cabinet_;
    std::map<std::string, std::int32_t> taken_;
};

// Makes the directory with all that leads to it.
void makeDirectory(const std::string& path, platform::FileSystem& files) {
    for (std::size_t end = path.find_first_of("/\\", 1);; end = path.find_first_of("/\\", end + 1)) {
        const std::string part = path.substr(0, end);
        if (!files.isDirectory(part.c_str())) {
            files.createDirectory(part.c_str());
        }
        if (end == std::string::npos) {
            break;
        }
    }
    if (!files.isDirectory(path.c_str())) {
        throw InstallerError("%s: the directory can't be made", path.c_str());
    }
}

void writeEntry(const Cabinet& cabinet, std::int32_t index, const std::string& path,
                platform::FileSystem& files) {
    if (!hasRightDigest(cabinet, index)) {
        throw InstallerError("the file \"%s\" is damaged in the package",
                             std::string(cabinet.entry(index).alias()).c_str());
    }
    const EntryContent content = cabinet.entryContent(index);
    const int status = OUtils::writeWholeFile(
        path.c_str(), std::string_view(reinterpret_cast<const char*>(content.data), content.size), files);
    if (status != 0) {
        files.removeFile(path.c_str());
        throw InstallerError("%s can't be written (error %d)", path.c_str(), status);
    }
}

}  // namespace

void runExtract(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    PackageFileReader package(files);
    package.locate(commandLine.package);
    package.load();
    const Cabinet& cabinet = package.cabinet();
    const std::vector<std::int32_t> chosen = chooseEntries(cabinet, commandLine.aliases);
    makeDirectory(commandLine.target, files);
    TargetNames names(cabinet);
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const std::string name = names.nameOf(chosen[i]);
        if (!name.empty()) {
            writeEntry(cabinet, chosen[i], commandLine.target + "/" + name, files);
        }
        output.progress("Extracting", static_cast<int>((i + 1) * 100 / chosen.size()));
    }
    output.print(std::to_string(chosen.size()) + " files extracted to " + printable(commandLine.target));
}
