#include "platform/message_box.h"

#include <unistd.h>

#include <string>

#include "base/visible_text.h"
#include "platform/posix/system_calls.h"

namespace platform {

void showMessage(std::string_view text, std::string_view caption, MessageIcon) {
    std::string line(caption);
    line += ":\n";
    line += text;
    line += '\n';
    line = OUtils::visibleText(line);
    // Nobody is left to tell when standard error fails.
    std::size_t ignored = 0;
    writeAll(STDERR_FILENO, line.data(), line.size(), ignored);
}

}  // namespace platform
