#include "engine/changes/element_groups.h"

#include <algorithm>
#include <vector>

#include "engine/description_tags.h"
#include "engine/report.h"

bool applyGroups(const ChangeContext& context, vocabulary::ElementName group, const ChildChange& change) {
    DescriptionTags& tags = context.tags;
    bool succeeded = true;
    for (std::int32_t node = tags.nextGroup(group, -1); node >= 0; node = tags.nextGroup(group, node)) {
        const std::vector<std::int32_t> children = tags.childrenOf(node);
        succeeded = std::all_of(children.begin(), children.end(),
                                [&](std::int32_t child) {
                                    context.report.pumpEvents();
                                    return !tags.conditionHolds(child) || change(child);
                                }) &&
                    succeeded;
        context.report.flushLines();
    }
    return succeeded;
}
