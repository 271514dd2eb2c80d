#include "platform/edit_control.h"

namespace platform {

std::unique_ptr<EditControl> editControlOf(void* /*window*/) {
    return nullptr;
}

}  // namespace platform
