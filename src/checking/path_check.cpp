#include "checking/path_check.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/condition_scope.h"
#include "checking/packed_files.h"
#include "checking/path_values.h"
#include "checking/quoted_text.h"
#include "checking/removed_paths.h"
#include "checking/shared_directories.h"

namespace {

constexpr std::string_view kRecords[] = {"InstallLogFile", "InstallBackupFile", "UninstallXmlFile",
                                         "UninstallCmd"};

bool hasDrive(std::string_view path) {
    const bool isLetter =
        !path.empty() && ((path[0] >= 'a' && path[0] <= 'z') || (path[0] >= 'A' && path[0] <= 'Z'));
    return isLetter && path.size() > 1 && path[1] == ':';
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7f';
}

bool isRelative(std::string_view path) {
    const std::size_t start = hasDrive(path) ? 2 : 0;
    return !path.empty() && !beginsWithReference(path) &&
           (start == path.size() ? start == 0 : !OUtils::isSeparator(path[start]));
}

// Says where a path stands: at an attribute, or at the text of its element.
struct Place {
    std::int32_t node;
    std::string_view attribute;  // empty for the text
    std::string_view text;
};

class PathCheck {
public:
    PathCheck(const CheckContext& context, const PackedFiles& files, const PathValues& paths)
        : context_(context), files_(files), paths_(paths), unchanged_(paths.unchanged()) {}

    void run() {
        for (const PackedFile& file : files_.all()) {
            checkFile(file);
        }
        for (const std::int32_t node : context_.nodesOf("Tree")) {
            checkDestination({node, "Dest", context_.attribute(node, "Dest").value_or("")});
        }
        for (const std::string_view record : kRecords) {
            if (const std::int32_t node = context_.firstOf(record); node >= 0) {
                checkRecord({node, "", context_.text(node)});
            }
        }
        for (const std::int32_t node : context_.nodesOf("Add@Shortcuts")) {
            checkPlace({node, "Dest", context_.attribute(node, "Dest").value_or("")});
        }
        for (const std::int32_t node : context_.nodesOf(grammar::kPattern)) {
            checkCleanup({node, "Dest", context_.attribute(node, "Dest").value_or("")});
        }
    }

private:
    void checkFile(const PackedFile& file) {
        const Place place{file.node, "Dest", file.dest};
        if (file.dest.empty()) {
            if (context_.attribute(file.node, "Dest")) {
                add("path-empty", place, "a file with an empty Dest isn't installed");
            }
            return;
        }
        checkDestination(place);
    }

    void checkDestination(const Place& place) {
        checkPlace(place);
        if (!place.text.empty() && isNoPlaceForFiles(paths_.resolve(place.text), paths_)) {
            add("path-dangerous", place, inQuotes(place.text) + " is no directory of a product's own");
        }
    }

    void checkRecord(const Place& place) {
        checkPlace(place);
        const std::string path = paths_.resolve(place.text);
        if (isNoPlaceForFiles(directoryOf(path), paths_)) {
            add("path-dangerous", place, inQuotes(place.text) + " lies in no directory of a product's own");
        }
    }

    void checkCleanup(const Place& place) {
        checkPlace(place);
        if (!place.text.empty() && isSharedDirectory(paths_.resolve(place.text), paths_)) {
            add("path-dangerous", place,
                inQuotes(place.text) + " has files of others, and a clean-up goes through all that is below");
        }
    }

    void checkPlace(const Place& place) {
        if (place.text.empty()) {
            return;
        }
        const std::vector<std::string> values = valuesOf(place.text);
        if (std::ranges::all_of(values, &std::string::empty)) {
            add("path-empty", place, "nothing gives " + inQuotes(place.text) + " a value");
        } else if (std::ranges::all_of(values, isRelative)) {
            add("path-relative", place,
                inQuotes(place.text) + (hasReference(place.text)
                                            ? " is the relative path " + inQuotes(values.front())
                                            : " is a relative path"));
        } else {
            checkSystem(place);
        }
        checkCharacters(place);
    }

    // What a setup can't record it doesn't begin with.
    void checkCharacters(const Place& place) {
        const std::string path = unchanged_.resolve(place.text);
        if (std::ranges::any_of(path, isControl)) {
            add("path-character", place,
                inQuotes(place.text) + " holds a control character, so nothing is installed");
        } else if (!path.empty() && OUtils::isWhiteSpace(path.back())) {
            add("path-character", place,
                inQuotes(place.text) + " ends with a blank, so nothing is installed");
        } else if (place.attribute.empty() && path.find('"') != std::string::npos) {
            add("path-character", place,
                inQuotes(place.text) + " holds a quotation mark, so the product can't be registered");
        }
    }

    std::vector<std::string> valuesOf(std::string_view text) const {
        std::vector<std::string> values;
        for (const PathValues::Choice& choice : paths_.choicesOf(text)) {
            values.push_back(paths_.resolve(text, choice));
        }
        return values.empty() ? std::vector<std::string>{paths_.resolve(text)} : values;
    }

    // What has a condition may be meant for one of the systems.
    void checkSystem(const Place& place) {
        const bool isWindowsPath = hasDrive(place.text);
        const bool isLinuxPath = place.text.starts_with('/') && !place.text.starts_with("//");
        if (hasConditionAround(context_, place.node) ||
            !(context_.targets().windows && context_.targets().linux)) {
            checkOnlySystem(place, isWindowsPath, isLinuxPath);
        } else if (isWindowsPath || isLinuxPath) {
            add("path-system", place,
                inQuotes(place.text) + " is a path of " + (isWindowsPath ? "Windows" : "Linux") + " alone");
        }
    }

    void checkOnlySystem(const Place& place, bool isWindowsPath, bool isLinuxPath) {
        const CheckTargets targets = context_.targets();
        if ((isWindowsPath && !targets.windows) || (isLinuxPath && !targets.linux)) {
            add("path-system", place, inQuotes(place.text) + " is a path of the other system");
        }
    }

    void add(FindingCode code, const Place& place, std::string message) const {
        if (place.attribute.empty()) {
            context_.addAtText(code, place.node, std::move(message));
        } else {
            context_.addAtAttribute(code, place.node, place.attribute, std::move(message));
        }
    }

    const CheckContext& context_;
    const PackedFiles& files_;
    const PathValues& paths_;
    PathValues unchanged_;
};

}  // namespace

void checkPaths(const CheckContext& context, const PackedFiles& files, const PathValues& paths) {
    PathCheck(context, files, paths).run();
}
