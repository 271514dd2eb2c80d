#pragma once

#include <cstdint>
#include <string>

#include "platform/memory/memory_platform.h"
#include "product_case.h"

// Makes a package of the product with this description.
void packProduct(MemoryPlatform& machine, const ProductCase& product, const std::string& description,
                 const std::string& package);

// Runs a setup, or an uninstallation from its log, from its first page to its last. Whether it came to its
// end; `outResult` is 0 after a success.
bool runSession(platform::Platform platform, const std::string& path, std::uint32_t flags, int& outResult);
