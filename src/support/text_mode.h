#pragma once

#include "platform/text_mode.h"

namespace OUtils {

// What ends a line in the text files of this system.
inline const char* textLineEnd() {
    return platform::textLineEnd();
}

}  // namespace OUtils
