#pragma once

#include <functional>

#include "engine/action_log_writer.h"
#include "engine/description_tags.h"
#include "engine/report.h"
#include "support/debug_log.h"

class InstallerUI;
class SystemModifications;
namespace platform {
class FileSystem;
}

// What every walker of the description's tags works with. All of it is borrowed.
struct TagContext {
    DescriptionTags& tags;
    SystemModifications& modifications;
    ActionLogWriter& log;
    ErrorList& errors;
    DebugLog debugLog;
};

// Makes one change that a child of a group asks for. False when it failed.
using TagChange = std::function<bool(std::int32_t child)>;

// Visits the children with a true condition of every group of that name whose condition is true. A change
// that fails ends its group; the next group is still visited. False when any failed.
bool applyGroups(const TagContext& context, const char* group, InstallerUI* ui, const TagChange& change);
