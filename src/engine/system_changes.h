#pragma once

#include "engine/description_tags.h"
#include "engine/environment_tags.h"
#include "engine/ini_tags.h"
#include "engine/modify_file_tags.h"
#include "engine/tag_context.h"

// The tags of the description that change the system beside files and actions: a walker for each kind. Every
// change that was made is recorded in the action log, behind the change. A failed one ends its group; the
// next group of the kind is still visited.
class SystemChanges {
public:
    explicit SystemChanges(TagContext context) : environment_(context), ini_(context), modify_(context) {}

    // All: 0, or 1 when a change failed. `ui` may be null.
    int applyEnvironmentTags(InstallerUI* ui) { return environment_.apply(ui); }
    int applyIniTags(InstallerUI* ui) { return ini_.apply(ui); }
    int applyModifyFileTags(InstallerUI* ui) { return modify_.apply(ui); }

private:
    EnvironmentTags environment_;
    IniTags ini_;
    ModifyFileTags modify_;
};
