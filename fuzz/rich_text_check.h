#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "fuzz_target.h"
#include "text/utf8_check.h"
#include "ui/gui/toolkit/control.h"

// Aborts if a command ends a style that isn't open, or has a text that isn't UTF-8 or a value that no control
// can do anything with. Returns the texts.
inline std::string requireSoundCommands(std::span<const RichTextCommand> commands) {
    using Kind = RichTextCommand::Kind;
    std::size_t open = 0;
    std::string texts;
    for (const RichTextCommand& command : commands) {
        require(!findInvalidUtf8(command.text).has_value());
        require(command.value >= 0);
        texts += command.text;
        if (command.kind == Kind::kEndStyle) {
            require(open > 0);
            --open;
        } else if (command.kind >= Kind::kBeginBold && command.kind <= Kind::kBeginLeftIndent) {
            ++open;
        }
    }
    return texts;
}
