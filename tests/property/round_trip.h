#pragma once

#include <string>
#include <vector>

#include "product_case.h"

// Installs the product on a machine in memory, lets its user live with it, uninstalls it from its log and
// compares. What differs from what may, one line each; empty when all is well.
std::vector<std::string> runRoundTrip(const ProductCase& product);

// The smallest case that still fails, found by leaving out what isn't needed for that.
ProductCase shrink(ProductCase failing);
