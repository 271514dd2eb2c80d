#pragma once

#include <string>
#include <string_view>
#include <vector>

// What a setup leaves out of a document, or shows otherwise than it is written there, by the rules of the
// readers. One line of text for each place, in the order of the document, with its line, counted from 1, and
// what to do about it. Control characters of the document are not replaced. A broken document gives what was
// read before the fault.
std::vector<std::string> markdownLosses(std::string_view document);
std::vector<std::string> richTextLosses(std::string_view document);

// All that a setup doesn't show as it is written, as above: a zero byte, a byte order mark, then the losses.
std::vector<std::string> lossesOf(std::string_view document, bool isRichText);
