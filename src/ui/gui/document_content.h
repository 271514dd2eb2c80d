#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ui/gui/rich_text_commands.h"

// The colours of a document's text, each 0x00BBGGRR, or -1 when not set. A session without a theme sets none.
struct DocumentColours {
    std::int32_t element = -1;  // its own
    std::int32_t theme = -1;    // ThemeSlot::kActiveText
};

// These functions turn a document of a product into what a control is given. `format` is the element's, by
// the rules of documentFormat: markdown and verbatim text are for all of them. A document ends at its first
// zero byte; a broken one gives nothing, so the control stays empty. All texts are valid UTF-8.

// Otherwise rich text, of which only the theme's colour counts.
RichTextCommands richTextContent(std::string_view document, std::string_view format,
                                 const DocumentColours& colours);

// A page of HTML. Otherwise the document is HTML, which has only the theme's colour put around the content of
// its body.
std::string htmlContent(std::string_view document, std::string_view format, const DocumentColours& colours);

// Otherwise plain text. Lines end at line feeds alone.
std::string plainTextContent(std::string_view document, std::string_view format);

// Colours of a description and of the toolkit are 0x00BBGGRR, those of HTML 0xRRGGBB.
std::uint32_t htmlColour(std::int32_t colour);
