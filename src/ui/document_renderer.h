#pragma once

#include <optional>
#include <string>
#include <string_view>

// Turns the documents that a page shows into plain text for a console.
class DocumentRenderer {
public:
    virtual ~DocumentRenderer() = default;

    // Can documents of this format be turned into text? `format` is the element's own word, without regard
    // to ASCII case; what isn't "TandrelMarkdown" is rich text.
    virtual bool canRender(std::string_view format) = 0;
    // The text for a console of `columns` cells, lines ending with a line feed. Nothing when the document is
    // broken.
    virtual std::optional<std::string> render(std::string_view document, std::string_view format,
                                              int columns) = 0;
};
