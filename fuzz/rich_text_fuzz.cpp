#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "rich_text_check.h"
#include "text/rich_text_callback.h"
#include "text/rich_text_wrap.h"
#include "text/rtf_reader.h"
#include "ui/gui/document_content.h"

// The first byte is the width, the rest the document: read in all modes, alone and with a callback, wrapped,
// and put into a control.
namespace {

// Gathers the text as a control would; between two calls nothing else may be written.
class Gathering : public RichTextCallback {
public:
    void addChar(std::string_view text) override { gathered += text; }
    void paragraph() override {}
    void setStyle(RichTextStyle, bool) override {}
    void setFontSize(int) override {}
    void setAlignment(RichTextAlignment) override {}
    void resetStyles() override {}
    void setLeftIndent(int) override {}
    void endDocument() override { ended = true; }

    std::string gathered;
    bool ended = false;
};

std::optional<std::string> read(std::string_view document, RtfMode mode, int width) {
    return RtfReader().read(document, mode, width);
}

std::string withoutBlanks(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

bool isOneToken(std::string_view line) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    return std::all_of(line.begin(), line.end(), isBlank) || std::none_of(line.begin(), line.end(), isBlank);
}

void checkWrapped(const std::string& text, int width) {
    const std::string wrapped = RichTextWrap(width).wrap(text);
    require(withoutBlanks(wrapped) == withoutBlanks(text));
    std::string_view rest = wrapped;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        require(end != std::string_view::npos);
        const std::string_view line = rest.substr(0, end);
        const auto tabs = static_cast<std::size_t>(std::count(line.begin(), line.end(), '\t'));
        require(line.size() + 7 * tabs <= static_cast<std::size_t>(width) || isOneToken(line));
        rest.remove_prefix(end + 1);
    }
}

std::string asciiOf(std::string text) {
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80 || c == '\n'; });
    return text;
}

// A control shows the letters of the plain text, with lines of its own.
void checkControl(std::string_view document, const std::optional<std::string>& text, std::int32_t colour) {
    const RichTextCommands commands = richTextContent(document, "", {.element = -1, .theme = colour});
    const std::string shown = requireSoundCommands(commands.get());
    require(asciiOf(shown) == asciiOf(text.value_or("")));
}

}  // namespace

bool accepts(std::string_view input) {
    if (input.empty()) {
        return false;
    }
    const int width = std::max<int>(1, static_cast<std::uint8_t>(input[0]));
    const std::string_view document = input.substr(1);
    Gathering gathering;
    RtfReader reader;
    reader.setCallback(&gathering);
    const auto text = reader.read(document, RtfMode::kControl, 0);
    require(text.has_value() == gathering.ended);
    require(read(document, RtfMode::kPlain, 0) == text);
    require(read(document, RtfMode::kTerminal, 0).has_value() == text.has_value());
    if (text) {
        require(gathering.gathered == *text && text->size() <= document.size());
        require(read(document, RtfMode::kPlain, width) == RichTextWrap(width).wrap(*text));
    }
    checkControl(document, text, width % 2 == 0 ? -1 : width);
    checkWrapped(std::string(document), width);
    return text.has_value() && !text->empty();
}
