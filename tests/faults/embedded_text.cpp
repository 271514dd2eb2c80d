#include "embedded_text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

const std::string& embeddedText(const std::string& name) {
    const auto found =
        std::ranges::find_if(embeddedTexts(), [&](const auto& text) { return text.name == name; });
    if (found == embeddedTexts().end()) {
        std::printf("%s isn't part of this test\n", name.c_str());
        std::exit(2);
    }
    return found->text;
}
