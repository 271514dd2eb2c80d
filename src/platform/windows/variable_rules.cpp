#include "platform/variable_rules.h"

namespace platform {

VariableRules systemVariableRules() {
    return {true, true};
}

}  // namespace platform
