#pragma once

#include <span>
#include <string>
#include <string_view>

#include "ui/gui/toolkit/control.h"

// Commands as a script that tests can read: "text" is written, [text] a new paragraph, (b) opens a style,
// (centre), (indent 120), (colour 1020304) likewise, / ends one, (size 9) sets the size of the letters.
inline std::string richTextScript(std::span<const RichTextCommand> commands) {
    using Kind = RichTextCommand::Kind;
    static constexpr std::string_view kAlignments[] = {"(left)", "(centre)", "(right)", "(justified)"};
    std::string script;
    for (const RichTextCommand& command : commands) {
        const std::string value = std::to_string(command.value);
        switch (command.kind) {
            case Kind::kWrite:
                script.append("\"").append(command.text).append("\"");
                break;
            case Kind::kAddParagraph:
                script.append("[").append(command.text).append("]");
                break;
            case Kind::kBeginBold:
                script += "(b)";
                break;
            case Kind::kBeginItalic:
                script += "(i)";
                break;
            case Kind::kBeginUnderline:
                script += "(u)";
                break;
            case Kind::kBeginAlignment:
                script += kAlignments[command.value];
                break;
            case Kind::kBeginTextColour:
                script += "(colour " + value + ")";
                break;
            case Kind::kBeginLeftIndent:
                script += "(indent " + value + ")";
                break;
            case Kind::kEndStyle:
                script += "/";
                break;
            case Kind::kSetPointSize:
                script += "(size " + value + ")";
                break;
        }
    }
    return script;
}
