#pragma once

#include <optional>
#include <string>
#include <string_view>

// The word by which a description marks a document of the markdown dialect.
inline constexpr std::string_view kMarkdownFormat = "TandrelMarkdown";

// The documents of a product as plain text for `columns` cells, each line ending with a line feed: the same
// for a console, for a tool and for a test. Nothing when the document is broken.
std::optional<std::string> markdownAsText(std::string_view document, int columns);
std::optional<std::string> richTextAsText(std::string_view document, int columns);
