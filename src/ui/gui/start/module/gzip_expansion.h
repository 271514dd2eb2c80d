#pragma once

#include <string>
#include <string_view>

// Expands a file in the format of gzip (RFC 1952) that is the work of one call and less than 2 GiB long, into
// `outContent`. False when it is damaged or was cut anywhere, by its checksum and its length; then
// `outContent` is empty.
bool expandGzip(std::string_view file, std::string& outContent);
