#include "support/outils_cprint.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "base/visible_text.h"

namespace {

constexpr char kEscape = 27;
constexpr std::size_t kSequenceLimit = 16;

}  // namespace

void outils_cprint(platform::ConsoleDevice& console, bool useColour, std::string_view text) {
    const bool passOn = useColour && console.isOutputTerminal();
    std::string_view rest = text;
    std::string out;
    bool complete = true;
    while (!rest.empty() && complete) {
        const std::size_t plain = std::min(rest.find(kEscape), rest.size());
        out += OUtils::visibleText(rest.substr(0, plain));
        rest.remove_prefix(plain);
        const std::size_t end = rest.find('m');
        complete = rest.empty() || end < kSequenceLimit;
        if (!rest.empty() && complete) {
            out += passOn ? rest.substr(0, end + 1) : std::string_view();
            rest.remove_prefix(end + 1);
        }
    }
    if (!complete) {
        out += "outils_cprint: Incorrect ESC length!";
    }
    if (!console.writeControl(out) || !console.flush()) {
        console.writeError("outils_cprint: Invalid handle!");
    }
}

void outils_cprintf(platform::ConsoleDevice& console, bool useColour, const char* format, ...) {
    char text[4096] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    outils_cprint(console, useColour, text);
}
