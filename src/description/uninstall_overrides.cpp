#include "description/uninstall_overrides.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "base/text_functions.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "support/debug_log.h"

namespace {

constexpr char kPath[] = "TandrelGroupInstallation/Installation/UninstallOverrides";
constexpr int kPredefined = -2;

}  // namespace

UninstallOverrides::UninstallOverrides(const PXML& description, VariableStore& source,
                                       Expressions& expressions, DebugLog debugLog)
    : description_(description), source_(source), expressions_(expressions), debugLog_(debugLog) {}

void UninstallOverrides::apply(VariableStore& target, const char* applicationName) {
    for (std::int32_t element = description_.findPath(kPath); element >= 0;
         element = description_.findPath(kPath, element)) {
        if (expressions_.evaluateCondition(description_.getAttribute(element, "Condition")) != 0) {
            applyElement(element, target, applicationName);
        }
    }
}

void UninstallOverrides::applyElement(int element, VariableStore& target, const char* applicationName) {
    std::vector<std::int32_t> children;
    description_.listChildren(element, children);
    for (const std::int32_t node : children) {
        if (OUtils::equalsIgnoreCase(description_.getName(node), "Variable") &&
            expressions_.evaluateCondition(description_.getAttribute(node, "Condition")) != 0 &&
            isMeantFor(node, applicationName)) {
            copyVariable(node, target);
        }
    }
}

bool UninstallOverrides::isMeantFor(int node, const char* applicationName) const {
    const char* list = description_.getAttribute(node, "AppList");
    if (list == nullptr || applicationName == nullptr || *applicationName == '\0') {
        return true;
    }
    std::vector<std::string> names;
    OUtils::splitText(list, ';', names);
    return std::find(names.begin(), names.end(), applicationName) != names.end();
}

void UninstallOverrides::copyVariable(int node, VariableStore& target) {
    const char* text = description_.getText(node);
    const char* from = description_.getAttribute(node, "From");
    const char* sourceName = from != nullptr ? from : text;
    if (text == nullptr || sourceName == nullptr) {
        return;
    }
    char value[InstallVariable::kTextCapacity];
    const int found = source_.getVariable(sourceName, value, sizeof value);
    if (found >= 0) {
        target.setVariable(text, value);
    } else
        debugLog_.print(
            found == kPredefined
                ? "WARNING: Trying to override uninstall variable with a predefined one %s"
                : "WARNING: Trying to override uninstall variable with nonexisting variable name %s",
            sourceName);
}
