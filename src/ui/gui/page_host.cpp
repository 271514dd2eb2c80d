#include "ui/gui/page_host.h"

namespace {

class CopiedText : public TextReceiver {
public:
    void take(std::string_view text) override { copy = text; }

    std::string copy;
};

}  // namespace

std::string textOf(Toolkit& toolkit, ControlId control) {
    CopiedText text;
    toolkit.text(control, text);
    return text.copy;
}
