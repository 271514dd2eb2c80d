#include "ui/gui/page_host.h"

#include "ui/gui/toolkit/copied_text.h"

std::string textOf(Toolkit& toolkit, ControlId control) {
    CopiedText text;
    toolkit.text(control, text);
    return text.copy;
}
