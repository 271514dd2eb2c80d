#include "checking/condition_scope.h"

#include "checking/check_context.h"

bool hasConditionAround(const CheckContext& context, std::int32_t node) {
    for (; node >= 0; node = context.xml().getNode(node)->parent) {
        if (context.attribute(node, "Condition")) {
            return true;
        }
    }
    return false;
}
