#include "ui/gui/start/window_toolkit.h"

#include "ui/gui/start/carried_toolkit.h"
#include "ui/gui/toolkit/copied_text.h"

namespace {

struct Opening {
    Toolkit* toolkit = nullptr;
    std::string reason;
};

Opening open() {
    Opening opening;
    Toolkit* const toolkit = carriedToolkit(opening.reason);
    if (toolkit != nullptr) {
        CopiedText reason;
        opening.toolkit = toolkit->open(reason) ? toolkit : nullptr;
        opening.reason = reason.copy;
    }
    return opening;
}

}  // namespace

Toolkit* openWindowToolkit(std::string& outReason) {
    static const Opening opening = open();
    outReason = opening.reason;
    return opening.toolkit;
}
