#include "platform/text_mode.h"

#include "platform/manner.h"

namespace platform {

const char* textLineEnd() {
    if (const Manner* const manner = currentManner) {
        return manner->textLineEnd();
    }
    return "\r\n";
}

}  // namespace platform
