#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/document_text.h"

// What a setup leaves out of a document, or shows otherwise than it is written there, by the rules of the
// readers. One line of text for each place, in the order of the document, with its line, counted from 1, and
// what to do about it. Control characters of the document are not replaced. A broken document gives what was
// read before the fault.
std::vector<std::string> markdownLosses(std::string_view document);
std::vector<std::string> richTextLosses(std::string_view document);

// The same of a verbatim text: each line with bytes that aren't UTF-8.
std::vector<std::string> verbatimLosses(std::string_view document);

// All that a setup doesn't show as it is written, as above: a zero byte, a byte order mark unless it is
// dropped, then the losses. kOfElement stands for rich text.
std::vector<std::string> lossesOf(std::string_view document, DocumentFormat format);
