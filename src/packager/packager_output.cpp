#include "packager/packager_output.h"

std::string printable(std::string_view text) {
    std::string safe(text);
    for (char& c : safe) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            c = '?';
        }
    }
    return safe;
}
