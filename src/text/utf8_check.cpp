#include "text/utf8_check.h"

#include "base/utf8_character.h"

std::optional<std::size_t> findInvalidUtf8(std::string_view text) {
    for (std::size_t number = 0; !text.empty(); ++number) {
        const std::size_t length = OUtils::utf8CharacterLength(text);
        if (length == 0) {
            return number;
        }
        text.remove_prefix(length);
    }
    return std::nullopt;
}
