#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ui/gui/toolkit/control.h"

// Records what fills a rich text control. Texts become valid UTF-8 here.
class RichTextCommands {
public:
    RichTextCommands() = default;
    // A copy would refer to the texts of its original.
    RichTextCommands(const RichTextCommands&) = delete;
    RichTextCommands& operator=(const RichTextCommands&) = delete;
    RichTextCommands(RichTextCommands&&) = default;
    RichTextCommands& operator=(RichTextCommands&&) = default;

    // Forgets everything.
    void clear();
    // Nothing happens for an empty text.
    void write(std::string_view text);
    void addParagraph(std::string_view text = {});
    // `style` is one of the kinds that open a style.
    void begin(RichTextCommand::Kind style, int value = 0);
    // Nothing happens when no style is open.
    void endStyle();
    // 0 is the size that the control had at first.
    void setPointSize(int size);

    // Valid until the next change, and not longer than this object.
    std::span<const RichTextCommand> get() const { return commands_; }

private:
    std::string_view keep(std::string_view text);

    std::vector<RichTextCommand> commands_;
    std::deque<std::string> texts_;  // of the commands; their addresses don't change
    std::size_t openStyles_ = 0;
};
