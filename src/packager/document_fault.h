#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// For authors: why a setup would show nothing of a document, with the line, counted from 1, and with what to
// do about it. One line of text without a line end; control characters of the document are in it as they are.
std::string markdownFault(std::string_view document);
std::string richTextFault(std::string_view document);

// The line in which the byte at `offset` stands, counted from 1. An offset behind the end counts as the end.
std::size_t lineOfOffset(std::string_view document, std::size_t offset);
