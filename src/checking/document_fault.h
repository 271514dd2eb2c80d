#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/document_text.h"

// Explains to an author why a setup would not show a document: the line, counted from 1, and what to do about
// it. One line of text without a line end; control characters of the document are not replaced.
std::string markdownFault(std::string_view document);
std::string richTextFault(std::string_view document);

// The same for a document of any format; empty when a setup shows it. kOfElement stands for rich text. There
// is nothing wrong with a verbatim text.
std::string documentFault(std::string_view document, DocumentFormat format);

// The line that contains the byte at `offset`, counted from 1. An offset past the end counts as the end.
std::size_t lineOfOffset(std::string_view document, std::size_t offset);
