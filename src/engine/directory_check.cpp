#include "engine/directory_check.h"

#include <algorithm>

#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/expressions.h"
#include "description/file_sets.h"
#include "description/product_description.h"
#include "engine/action_log_format.h"
#include "engine/report.h"
#include "platform/environment.h"

namespace {

namespace Format = ActionLogFormat;

// Room for the tag, a number of levels and their separators, and the separator at the end.
constexpr std::size_t kMostBytes = Format::kLineLimit - 16;

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

// Control characters don't go to a screen.
std::string printable(std::string_view text) {
    std::string result(text);
    std::ranges::replace_if(result, isControl, '?');
    return result;
}

}  // namespace

bool isAbsolutePath(std::string_view path) {
    const bool hasDrive = path.size() > 2 && isLetter(path[0]) && path[1] == ':';
    return !path.empty() && OUtils::isSeparator(path[hasDrive ? 2 : 0]);
}

std::string absolutePath(platform::Environment& environment, const std::string& path) {
    const bool hasDrive = path.size() > 1 && isLetter(path[0]) && path[1] == ':';
    std::string current;
    if (path.empty() || hasDrive || isAbsolutePath(path) || !environment.currentDirectory(current)) {
        return path;
    }
    return OUtils::normalizedPath(current + '\\' + path);
}

std::string_view directoryFault(std::string_view path) {
    if (path.empty()) {
        return "it is empty";
    }
    if (std::ranges::any_of(path, isControl)) {
        return "it holds control characters";
    }
    if (OUtils::isWhiteSpace(OUtils::stripTrailingSeparators(path).back())) {
        return "it ends with a blank";
    }
    if (!isAbsolutePath(path)) {
        return "it is relative";
    }
    return path.size() > kMostBytes ? "it is too long" : "";
}

DirectoryCheck::DirectoryCheck(const EngineParts& parts, Report& report)
    : parts_(parts), report_(report), planner_(parts.model.fileSets, parts.model.expressions, DebugLog()) {}

bool DirectoryCheck::run() {
    for (const FileEntry& file : parts_.model.fileSets.getFiles()) {
        if (!seen_.contains(file.dest) && planner_.isSelected(file)) {
            seen_.insert(file.dest);
            checkDestination(file.dest);
        }
    }
    const ProductDescription& product = parts_.model.product;
    checkRecord("install log", product.installLogFile().value_or(""));
    checkRecord("backup file", product.installBackupFile().value_or(""));
    checkRecord("description", product.uninstallXmlFile().value_or(""));
    if (!isGood_) {
        report_.note("Nothing was installed.");
    }
    return isGood_;
}

void DirectoryCheck::checkDestination(const std::string& destination) {
    const std::string path = parts_.model.expressions.expand(destination, PathText::capacity()).value_or("");
    const std::string_view fault = directoryFault(path);
    if (!fault.empty()) {
        refuse("directory \"" + printable(destination) + "\" of files", path, fault);
    }
}

// Without such a path there is no such record.
void DirectoryCheck::checkRecord(std::string_view what, const std::string& path) {
    const std::string_view fault = path.empty() ? "" : directoryFault(path);
    if (!fault.empty()) {
        refuse(what, path, fault);
    }
}

void DirectoryCheck::refuse(std::string_view what, std::string_view path, std::string_view fault) {
    isGood_ = false;
    std::string text = "The path of the ";
    text.append(what).append(" can't be recorded, \"").append(printable(path)).append("\": ").append(fault);
    parts_.debugLog.line("ERROR: " + text);
    report_.note(text);
}
