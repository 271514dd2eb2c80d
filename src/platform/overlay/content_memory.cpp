#include "platform/overlay/content_memory.h"

#include <algorithm>
#include <vector>

void ContentMemory::grow(std::int64_t bytes) {
    used_ += bytes;
    if (bytes > 0 && used_ > limit_) {
        forgetLargest();
    }
}

// Half of the limit is made free, so that this isn't done for each write.
void ContentMemory::forgetLargest() {
    std::vector<KeptContent*> kept(contents_.begin(), contents_.end());
    std::ranges::sort(
        kept, [](const KeptContent* a, const KeptContent* b) { return a->keptBytes() > b->keptBytes(); });
    for (KeptContent* const content : kept) {
        if (used_ <= limit_ / 2) {
            break;
        }
        content->forget();
    }
}
