#include "platform/variable_rules.h"

namespace platform {

VariableRules systemVariableRules() {
    return {};
}

}  // namespace platform
