#pragma once

#include <cstdint>
#include <vector>

#include "package/package_writer.h"

// Reorders the files of a large package with few stripes so that the stripes, which are equal parts of it,
// take about the same time to compress: neighbours stay together in runs, and the runs are dealt to the
// stripes. The first file stays the first; the sizes of the files must be known. Small packages, and those
// with many stripes, keep their order.
void balanceStripes(std::vector<PackageFile>& entries, std::int32_t stripes);
