#pragma once

#include <string>
#include <string_view>

#include "packager/packager_output.h"
#include "text/document_text.h"

// Warns of what a setup doesn't show as it is written: the losses, a zero byte, a byte order mark. kOfElement
// stands for rich text. `path` names the document in the warnings.
void warnOfLosses(const std::string& path, std::string_view document, DocumentFormat format,
                  PackagerOutput& output);
