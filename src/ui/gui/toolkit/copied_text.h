#pragma once

#include <string>

#include "ui/gui/toolkit/toolkit.h"

// Keeps the text that it is handed.
class CopiedText : public TextReceiver {
public:
    void take(std::string_view text) override { copy = text; }

    std::string copy;
};
