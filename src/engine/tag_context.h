#pragma once

#include "engine/action_log_writer.h"
#include "engine/description_tags.h"
#include "engine/session_log.h"
#include "engine/work_report.h"

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
    SessionLog console;
};
