#include "checking/condition_check.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/condition_analysis.h"
#include "checking/declared_variables.h"
#include "checking/text_uses.h"

namespace {

// Bytes of a condition that count, after its references were replaced.
constexpr std::size_t kConditionLimit = 2047;

std::vector<std::string> valuesOf(const DeclaredVariables& variables, std::string_view name) {
    std::vector<std::string> values = variables.knownValues(name);
    const DeclaredVariable* const variable = variables.find(name);
    if (variable != nullptr && variable->isText) {
        values.emplace_back("any text");
    }
    return values;
}

void report(const CheckContext& context, const TextUse& use, const ConditionFault& fault) {
    if (use.attribute) {
        context.addAtAttribute(fault.code, use.node, *use.attribute, fault.message, fault.hint);
    } else {
        context.addAtText(fault.code, use.node, fault.message, fault.hint);
    }
}

}  // namespace

void checkConditions(const CheckContext& context, const DeclaredVariables& variables) {
    std::unordered_map<std::string, std::vector<ConditionFault>> faults;  // many files share a condition
    const auto check = [&](const TextUse& use, std::string_view condition) {
        if (condition.size() > kConditionLimit) {
            report(context, use,
                   {"text-too-long",
                    "this condition has " + std::to_string(condition.size()) + " bytes, and only " +
                        std::to_string(kConditionLimit) + " count",
                    {}});
            return;
        }
        const auto [found, isNew] = faults.try_emplace(std::string(condition));
        if (isNew) {
            const auto known = [&](std::string_view name) { return valuesOf(variables, name); };
            found->second = analyseCondition(condition, known);
        }
        for (const ConditionFault& fault : found->second) {
            report(context, use, fault);
        }
    };
    forEachText(context, [&](const TextUse& use) {
        if (use.kind != vocabulary::Kind::kCondition) {
            return;
        }
        // One condition for each choice of a field.
        const bool isList = context.typeOf(use.node) == "Field" && use.name == "Enable";
        for (const std::string& condition :
             isList ? OUtils::splitText(use.text, '|') : std::vector<std::string>{std::string(use.text)}) {
            if (!condition.empty()) {
                check(use, condition);
            }
        }
    });
}
