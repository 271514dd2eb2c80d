#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/rich_text_callback.h"
#include "ui/gui/rich_text_commands.h"

// Fills a rich text control with a rich text. Each style ends by itself, in whatever order the document ends
// them, and an end without a beginning changes nothing.
class wxRTFCallback : public RichTextCallback {
public:
    // In tenths of a millimetre; wider indents of a document are cut to it, as nothing would be visible.
    static constexpr int kWidestIndent = 2000;

    // `commands` is borrowed; it is complete after endDocument. `defaultColour` is 0x00BBGGRR, or -1 for the
    // control's own.
    explicit wxRTFCallback(RichTextCommands& commands, std::int32_t defaultColour = -1);

    void addChar(std::string_view text) override;
    // Ends all styles but the default colour.
    void paragraph() override;
    void setStyle(RichTextStyle kind, bool on) override;
    void setFontSize(int size) override;
    void setAlignment(RichTextAlignment alignment) override;
    void resetStyles() override;
    void setLeftIndent(int tenthsOfMillimetre) override;
    void endDocument() override;

private:
    struct OpenStyle {
        RichTextCommand::Kind kind;
        int value;
    };

    void flush();
    void begin(OpenStyle style);
    void end(RichTextCommand::Kind kind);
    void endAll();
    void beginDefaultColour();

    RichTextCommands& commands_;
    const std::int32_t defaultColour_;
    std::vector<OpenStyle> open_;  // without the default colour, which lies below them
    std::string buffer_;
};
