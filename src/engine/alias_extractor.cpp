#include "engine/alias_extractor.h"

#include "base/errors.h"
#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "engine/file_contents.h"
#include "package/cabinet.h"
#include "platform/file_system.h"
#include "support/utilities.h"

namespace {

bool isEmpty(const char* text) {
    return text == nullptr || text[0] == '\0';
}

// An entry names a file of the directory that it is extracted to, and nothing else.
bool isPlainFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string::npos;
}

// A dot that begins the name, or follows another one, begins no extension.
void removeExtension(std::string& path) {
    const std::size_t dot = path.rfind('.');
    const std::size_t separator = path.find_last_of("/\\");
    const bool isInDirectory = separator != std::string::npos && dot != std::string::npos && dot < separator;
    if (dot == std::string::npos || dot == 0 || isInDirectory) {
        return;
    }
    const char before = path[dot - 1];
    if (!OUtils::isSeparator(before) && before != '.') {
        path.resize(dot);
    }
}

}  // namespace

std::string AliasExtractor::extractAlias(const char* alias, const char* destinationDirectory,
                                         bool expandVariablesInFile, bool stripExeExtension) {
    if (isEmpty(alias) || isEmpty(destinationDirectory)) {
        throw InstallerError("ERROR: Alias and/or destingation are not specified!");
    }
    if (!cabinet_.findAlias(alias)) {
        throw InstallerError("WARNING: Alias \"%s\" is not included in the installation", alias);
    }
    FileContent content;
    if (!contents_.read(alias, content)) {
        throw InstallerError("ERROR: Could not decompress the specified alias (%s)!", alias);
    }
    if (!files_.isDirectory(destinationDirectory)) {
        throw InstallerError("ERROR: Destination directory does NOT exist (%s)!", destinationDirectory);
    }
    std::string path = pathOf(alias, destinationDirectory, stripExeExtension);
    if (expandVariablesInFile) {
        contents_.expandVariables(content, FileContents::kExtractedFileLimit, path.c_str());
    }
    if (OUtils::writeWholeFile(path.c_str(), content.bytes, files_) != 0) {
        throw InstallerError("ERROR: Could not create file (%s)!", path.c_str());
    }
    return path;
}

std::string AliasExtractor::pathOf(const char* alias, const char* directory, bool stripExeExtension) {
    const std::string name(cabinet_.entry(*cabinet_.findAlias(alias)).name());
    if (!isPlainFileName(name)) {
        throw InstallerError("ERROR: Could not create file (%s)!", name.c_str());
    }
    PathText joined{std::string_view(directory)};
    OUtils::joinPath(joined.data(), name.c_str(), static_cast<std::int64_t>(PathText::capacity()));
    std::string path(joined.view());
    if (stripExeExtension) {
        removeExtension(path);
    }
    return path;
}
