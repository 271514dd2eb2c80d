#include "installer/receipt_file.h"

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "installer/record_list.h"
#include "platform/environment.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kSeparators = "/\\";
constexpr std::string_view kJsonEnd = ".json";

bool hasDrive(std::string_view path) {
    return path.size() > 1 && path[1] == ':';
}

// Without the separator, except that of a root; empty when there is none.
std::string parentOf(const std::string& path) {
    const std::size_t end = path.find_last_of(kSeparators);
    if (end == std::string::npos) {
        return "";
    }
    const std::string parent(OUtils::stripTrailingSeparators(path.substr(0, end)));
    return parent.empty() || (parent.size() == 2 && hasDrive(parent)) ? path.substr(0, end + 1) : parent;
}

std::string directoryAbove(const std::unordered_set<std::string>& identities, std::string path) {
    for (std::string above = parentOf(path); !above.empty() && above != path; above = parentOf(path)) {
        if (identities.contains(platform::pathIdentity(above))) {
            return above;
        }
        path = above;
    }
    return "";
}

bool isJson(std::string_view path) {
    return path.size() > kJsonEnd.size() &&
           OUtils::equalsIgnoreCase(path.substr(path.size() - kJsonEnd.size()), kJsonEnd);
}

}  // namespace

std::string ReceiptFile::absolutePath(const std::string& path, platform::Environment& environment) {
    std::string current;
    if (path.empty() || hasDrive(path) || !environment.currentDirectory(current)) {
        return path;
    }
    if (!OUtils::isSeparator(path[0])) {
        return current + (OUtils::isSeparator(current.back()) ? "" : "/") + path;
    }
    // A drive's root; two separators begin the name of a server.
    const bool isOfDrive = hasDrive(current) && (path.size() < 2 || !OUtils::isSeparator(path[1]));
    return isOfDrive ? current.substr(0, 2) + path : path;
}

std::optional<std::string> ReceiptFile::problemOf(const std::string& path, const std::string& log,
                                                  platform::FileSystem& files) {
    if (path.empty()) {
        return "the option -receipt names no file";
    }
    // It couldn't be handed on.
    if (path.find_first_of("\"\r\n") != std::string::npos) {
        return "the name of the receipt holds a double quote or a line break";
    }
    if (files.isDirectory(path) || OUtils::isSeparator(path.back())) {
        return "the receipt " + path + " would be a directory";
    }
    if (platform::pathIdentity(path) == platform::pathIdentity(log)) {
        return "the receipt would take the place of the action log";
    }
    const std::string parent = parentOf(path);
    if (!parent.empty() && !files.isDirectory(parent)) {
        return "there is no directory " + parent + " for the receipt";
    }
    return std::nullopt;
}

std::string ReceiptFile::directoryAmong(const std::unordered_set<std::string>& identities,
                                        const std::string& path, platform::FileSystem& files) {
    std::string found = directoryAbove(identities, path);
    std::string real;
    if (!found.empty() || files.realPath(parentOf(path), real) != 0) {
        return found;
    }
    return directoryAbove(identities, real + "/receipt");
}

int ReceiptFile::write(const RecordList& list, const std::string& path, platform::FileSystem& files) {
    return OUtils::writeWholeFile(path, isJson(path) ? listAsJson(list) : listAsText(list), files);
}

std::string ReceiptFile::failureText(const std::string& path, int status) {
    return "ERROR: The receipt " + path +
           " can't be written: " + (status > 0 ? platform::errorText(status) : "no file can be in its place");
}
