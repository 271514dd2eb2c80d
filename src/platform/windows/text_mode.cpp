#include "platform/text_mode.h"

namespace platform {

const char* textLineEnd() {
    return "\r\n";
}

}  // namespace platform
