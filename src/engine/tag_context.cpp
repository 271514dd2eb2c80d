#include "engine/tag_context.h"

#include <algorithm>

bool applyGroups(const TagContext& context, const char* group, InstallerUI* ui, const TagChange& change) {
    DescriptionTags& tags = context.tags;
    bool succeeded = true;
    for (std::int32_t node = tags.nextGroup(group, -1); node >= 0; node = tags.nextGroup(group, node)) {
        const std::vector<std::int32_t> children = tags.childrenOf(node);
        succeeded =
            std::all_of(children.begin(), children.end(),
                        [&](std::int32_t child) { return !tags.conditionHolds(child) || change(child); }) &&
            succeeded;
        Report(ui, &context.errors).flushLines();
    }
    return succeeded;
}
