#include "checking/setting_check.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/condition_scope.h"
#include "checking/path_values.h"
#include "checking/quoted_text.h"
#include "checking/references.h"

namespace {

constexpr std::string_view kLinuxEnding = ".desktop";

bool isHexadecimal(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

bool endsWithIgnoreCase(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && OUtils::equalsIgnoreCase(text.substr(text.size() - end.size()), end);
}

bool isPathVariable(std::string_view name) {
    return OUtils::equalsIgnoreCase(name, "PATH");
}

class SettingCheck {
public:
    SettingCheck(const CheckContext& context, const PathValues& paths) : context_(context), paths_(paths) {}

    void run() {
        for (const std::int32_t node : context_.nodesOf("Add@Shortcuts")) {
            checkShortcut(node);
        }
        for (const std::string_view type : {"Replace", "Append", "Insert"}) {
            for (const std::int32_t node : context_.nodesOf(type)) {
                checkEnvironment(node, type == "Replace");
            }
        }
        for (const std::int32_t node : context_.nodesOf("AddValue")) {
            checkRegistryData(node);
        }
    }

private:
    void checkShortcut(std::int32_t node) {
        const std::string_view type = context_.attribute(node, "Type").value_or("");
        if (type == "Symlink") {
            context_.addAtAttribute("shortcut-symlink", node, "Type", "a shortcut of the type Symlink fails");
            return;
        }
        const std::string name = paths_.resolve(context_.text(node));
        if (name.empty() || hasReference(name) || hasConditionAround(context_, node)) {
            return;
        }
        const std::string_view windowsEnding = type == "URL" ? ".url" : ".lnk";
        const CheckTargets targets = context_.targets();
        const bool failsOnWindows = targets.windows && !endsWithIgnoreCase(name, windowsEnding);
        if (failsOnWindows || (targets.linux && !name.ends_with(kLinuxEnding))) {
            context_.addAtText("shortcut-ending", node,
                               "on " + std::string(failsOnWindows ? "Windows" : "Linux") + " the shortcut " +
                                   inQuotes(name) + " must end in " +
                                   std::string(failsOnWindows ? windowsEnding : kLinuxEnding));
        }
    }

    void checkEnvironment(std::int32_t node, bool isReplacement) {
        const std::string_view name = context_.attribute(node, "VarName").value_or("");
        if (!isPathVariable(name)) {
            return;
        }
        if (isReplacement && !keepsPath(context_.text(node))) {
            context_.addAtElement("path-list-replaced", node,
                                  "this replaces the directories in which the system looks for programs");
        } else if (!isReplacement && !context_.attribute(node, "IsPath")) {
            context_.addAtElement("path-list-repeated", node,
                                  "a directory that is in " + std::string(name) + " is added once more");
        }
    }

    // A value that is made of the present one.
    static bool keepsPath(std::string_view value) {
        return std::ranges::any_of(bracketReferences(value), [](const Reference& reference) {
            return isEnvironmentName(reference.name) && isPathVariable(reference.name.substr(1));
        });
    }

    void checkRegistryData(std::int32_t node) {
        const std::string_view type = context_.attribute(node, "Type").value_or("");
        const std::string_view data = context_.text(node);
        const bool isExpanded = context_.attribute(node, "Expand") && !bracketReferences(data).empty();
        if (data.empty() || isExpanded) {
            return;
        }
        if (type == "REG_DWORD" && !isDoubleWord(data)) {
            context_.addAtText("registry-data", node,
                               inQuotes(data) + " is no hexadecimal number of at most 8 digits");
        } else if (type == "REG_BINARY" && (!isHexadecimal(data) || data.size() % 2 != 0)) {
            context_.addAtText("registry-data", node, inQuotes(data) + " is no pairs of hexadecimal digits");
        }
    }

    static bool isDoubleWord(std::string_view data) {
        constexpr std::size_t kMostDigits = 8;
        const std::string_view digits = OUtils::startsWithIgnoreCase(data, "0x") ? data.substr(2) : data;
        return isHexadecimal(digits) && digits.size() <= kMostDigits;
    }

    const CheckContext& context_;
    const PathValues& paths_;
};

}  // namespace

void checkSettings(const CheckContext& context, const PathValues& paths) {
    SettingCheck(context, paths).run();
}
