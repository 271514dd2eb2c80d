#include "support/p_std_out_console.h"

#include <string_view>

int PStdOutConsole::write(const char* text, std::int32_t length) {
    if (length < 1) {
        return 0;
    }
    const std::string_view whole(text, static_cast<std::size_t>(length));
    const std::string_view terminated = whole.substr(0, whole.find('\0'));
    return device_.write(terminated) && device_.flush() ? 0 : -1;
}
