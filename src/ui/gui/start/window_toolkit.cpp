#include "ui/gui/start/window_toolkit.h"

#include "ui/gui/start/carried_toolkit.h"

namespace {

class ReasonReceiver : public TextReceiver {
public:
    explicit ReasonReceiver(std::string& outText) : outText_(outText) {}
    void take(std::string_view text) override { outText_ = text; }

private:
    std::string& outText_;
};

struct Opening {
    Toolkit* toolkit = nullptr;
    std::string reason;
};

Opening open() {
    Opening opening;
    Toolkit* const toolkit = carriedToolkit(opening.reason);
    ReasonReceiver receiver(opening.reason);
    if (toolkit != nullptr && toolkit->open(receiver)) {
        opening.toolkit = toolkit;
    }
    return opening;
}

}  // namespace

Toolkit* openWindowToolkit(std::string& outReason) {
    static const Opening opening = open();
    outReason = opening.reason;
    return opening.toolkit;
}
