#include "description/uninstall_overrides.h"

#include <string>

#include "description/expressions.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "description/vocabulary_lookup.h"
#include "support/debug_log.h"

namespace {

constexpr vocabulary::ElementPath kPath = "TandrelGroupInstallation/Installation/UninstallOverrides";

}  // namespace

UninstallOverrides::UninstallOverrides(const PXML& description, VariableStore& source,
                                       Expressions& expressions, DebugLog debugLog)
    : description_(description), source_(source), expressions_(expressions), debugLog_(debugLog) {}

void UninstallOverrides::apply(const Setter& set, std::string_view applicationName) {
    for (std::int32_t element = description_.findPath(kPath); element >= 0;
         element = description_.findPath(kPath, element)) {
        if (holds(element)) {
            applyElement(element, set, applicationName);
        }
    }
}

void UninstallOverrides::applyElement(std::int32_t element, const Setter& set,
                                      std::string_view applicationName) {
    for (const std::int32_t node : description_.childrenOf(element)) {
        if (vocabulary::isCalled(description_, node, "Variable") && holds(node) &&
            isMeantFor(node, applicationName)) {
            copyVariable(node, set);
        }
    }
}

bool UninstallOverrides::holds(std::int32_t node) const {
    return expressions_.holds(vocabulary::attributeOf(description_, node, "Condition"));
}

bool UninstallOverrides::isMeantFor(std::int32_t node, std::string_view applicationName) const {
    const std::optional<std::string_view> list = vocabulary::attributeOf(description_, node, "AppList");
    if (!list || applicationName.empty()) {
        return true;
    }
    bool isListed = false;
    vocabulary::forEachWord(*list, [&](std::string_view name) { isListed |= name == applicationName; });
    return isListed;
}

void UninstallOverrides::copyVariable(std::int32_t node, const Setter& set) {
    const std::optional<std::string_view> name = description_.getText(node);
    if (!name) {
        return;
    }
    const std::string from(vocabulary::attributeOf(description_, node, "From").value_or(*name));
    const std::optional<VariableReading> found = source_.read(from, VariableLookup::kTextLimit);
    if (found && found->isStored()) {
        set(*name, found->value);
    } else {
        debugLog_.line("WARNING: Trying to override uninstall variable with " +
                       std::string(found ? "a predefined one " : "nonexisting variable name ") + from);
    }
}
