#include "description/pxml_entities.h"

namespace PXMLEntities {

namespace {

struct Entity {
    char character;
    std::string_view name;
};

constexpr Entity kEntities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'\'', "&apos;"}, {'"', "&quot;"}, {'>', "&gt;"},
};

}  // namespace

std::size_t decode(std::string_view text, char* out) {
    std::size_t length = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        char character = text[at];
        std::size_t skipped = 1;
        if (character == '&') {
            for (const Entity& entity : kEntities) {
                if (text.substr(at, entity.name.size()) == entity.name) {
                    character = entity.character;
                    skipped = entity.name.size();
                    break;
                }
            }
        }
        out[length++] = character;
        at += skipped;
    }
    return length;
}

void appendEscaped(std::string& out, std::string_view text) {
    std::size_t plain = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const Entity& entity : kEntities) {
            if (text[at] == entity.character) {
                out.append(text, plain, at - plain).append(entity.name);
                plain = at + 1;
                break;
            }
        }
    }
    out.append(text, plain);
}

std::vector<std::string_view> names() {
    std::vector<std::string_view> names;
    for (const Entity& entity : kEntities) {
        names.push_back(entity.name);
    }
    return names;
}

}  // namespace PXMLEntities
