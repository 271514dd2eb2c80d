#include "engine/alias_extractor.h"

#include <optional>

#include "base/errors.h"
#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "engine/file_contents.h"
#include "package/cabinet.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "support/utilities.h"

namespace {

// An entry names a file of the directory that it is extracted to, and nothing else.
bool isPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\:") == std::string_view::npos;
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

std::string AliasExtractor::extractAlias(std::string_view alias, std::string_view destinationDirectory,
                                         bool expandVariablesInFile, bool stripExeExtension) {
    const std::string key(alias);
    const std::string directory(destinationDirectory);
    if (key.empty() || directory.empty()) {
        throw InstallerError("ERROR: Alias and/or destingation are not specified!");
    }
    const std::optional<std::int32_t> entry = cabinet_.findAlias(key);
    if (!entry) {
        throw InstallerError("WARNING: Alias \"%s\" is not included in the installation", key.c_str());
    }
    FileContent content;
    if (!contents_.read(key, content)) {
        throw InstallerError("ERROR: Could not decompress the specified alias (%s)!", key.c_str());
    }
    if (!files_.isDirectory(directory)) {
        throw InstallerError("ERROR: Destination directory does NOT exist (%s)!", directory.c_str());
    }
    std::string path = pathOf(cabinet_.entry(*entry).name(), directory, stripExeExtension);
    if (expandVariablesInFile) {
        contents_.expandVariables(content, FileContents::kExtractedFileLimit, path);
    }
    if (const int status = OUtils::writeWholeFile(path, content.bytes, files_); status != 0) {
        const std::string reason = status < 0 ? "" : platform::errorText(status);
        throw InstallerError("ERROR: Could not create file (%s)!", path.c_str()).because(reason.c_str());
    }
    return path;
}

std::string AliasExtractor::pathOf(std::string_view name, std::string_view directory,
                                   bool stripExeExtension) {
    if (!isPlainFileName(name)) {
        throw InstallerError("ERROR: Could not create file (%s)!", std::string(name).c_str());
    }
    std::string path = OUtils::joinedPath(std::string(directory), name, PathText::capacity() - 1);
    if (stripExeExtension) {
        removeExtension(path);
    }
    return path;
}
