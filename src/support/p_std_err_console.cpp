#include "support/p_std_err_console.h"

#include <string_view>

int PStdErrConsole::write(const char* text, std::int32_t length) {
    if (length < 1) {
        return 0;
    }
    const std::string_view whole(text, static_cast<std::size_t>(length));
    const std::string_view terminated = whole.substr(0, whole.find('\0'));
    return device_.writeError(terminated) ? 0 : -1;
}
