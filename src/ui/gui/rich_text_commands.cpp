#include "ui/gui/rich_text_commands.h"

#include "base/utf8_character.h"

void RichTextCommands::clear() {
    commands_.clear();
    texts_.clear();
    openStyles_ = 0;
}

void RichTextCommands::write(std::string_view text) {
    if (!text.empty()) {
        commands_.push_back({RichTextCommand::Kind::kWrite, 0, keep(text)});
    }
}

void RichTextCommands::addParagraph(std::string_view text) {
    commands_.push_back({RichTextCommand::Kind::kAddParagraph, 0, keep(text)});
}

void RichTextCommands::begin(RichTextCommand::Kind style, int value) {
    commands_.push_back({style, value, {}});
    ++openStyles_;
}

void RichTextCommands::endStyle() {
    if (openStyles_ > 0) {
        commands_.push_back({RichTextCommand::Kind::kEndStyle, 0, {}});
        --openStyles_;
    }
}

void RichTextCommands::setPointSize(int size) {
    commands_.push_back({RichTextCommand::Kind::kSetPointSize, size, {}});
}

std::string_view RichTextCommands::keep(std::string_view text) {
    return text.empty() ? std::string_view() : texts_.emplace_back(OUtils::validUtf8(text));
}
