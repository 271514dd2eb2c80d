#include "packager/stripe_balancer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "package/cabinet_format.h"

namespace {

// With more stripes than this each processor gets several of them, and none waits long for another.
constexpr std::int32_t kMostDealtStripes = 8;
constexpr std::int64_t kLeastDealtSize = 16 * 1024 * 1024;
// Long compared with the window of the compression, so that neighbours still help each other.
constexpr std::int64_t kRunSize = 256 * 1024;

struct Pile {
    std::int64_t size = 0;
    std::vector<PackageFile> entries;
};

std::int64_t packedSize(const PackageFile& entry) {
    return entry.size + static_cast<std::int64_t>(CabinetFormat::kHeaderSize);
}

}  // namespace

void balanceStripes(std::vector<PackageFile>& entries, std::int32_t stripes) {
    std::int64_t total = 0;
    for (const PackageFile& entry : entries) {
        total += packedSize(entry);
    }
    if (stripes < 2 || stripes > kMostDealtStripes || total < kLeastDealtSize) {
        return;
    }
    std::vector<Pile> piles(static_cast<std::size_t>(stripes));
    std::size_t pile = 0;
    std::int64_t runSize = 0;
    for (PackageFile& entry : entries) {
        if (runSize >= kRunSize) {
            pile = static_cast<std::size_t>(
                std::min_element(piles.begin(), piles.end(),
                                 [](const Pile& a, const Pile& b) { return a.size < b.size; }) -
                piles.begin());
            runSize = 0;
        }
        runSize += packedSize(entry);
        piles[pile].size += packedSize(entry);
        piles[pile].entries.push_back(std::move(entry));
    }
    entries.clear();
    for (Pile& dealt : piles) {
        std::move(dealt.entries.begin(), dealt.entries.end(), std::back_inserter(entries));
    }
}
