#pragma once

#include "engine/tag_context.h"

// The groups `IniFiles`: keys of INI files.
class IniTags {
public:
    explicit IniTags(TagContext context) : context_(context) {}

    // 0, or 1 when a change failed whose failure counts.
    int apply(InstallerUI* ui);

private:
    bool applyChild(std::int32_t node, InstallerUI* ui);
    bool isComplete(std::int32_t node);

    TagContext context_;
};
