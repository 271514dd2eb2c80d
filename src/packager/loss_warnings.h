#pragma once

#include <string>
#include <string_view>

#include "packager/packager_output.h"

// Warns of what a setup doesn't show as it is written: the losses, a zero byte, a byte order mark. `path`
// names the document in the warnings.
void warnOfLosses(const std::string& path, std::string_view document, bool isRichText,
                  PackagerOutput& output);
