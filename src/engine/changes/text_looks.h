#pragma once

#include <memory>

#include "engine/changes/record_look.h"

// The looks at what was changed inside text files. The context's parts outlive the results.

// INI. A record that replaced a value doesn't keep the new one, and neither do several records of one key:
// there any value but the earlier one counts as made.
std::unique_ptr<RecordLooker> makeIniLooker(const LookContext& context);

// MODIFYFILE: whether all lines of the script are where the undo would take them out.
std::unique_ptr<RecordLooker> makeEditLooker(const LookContext& context);
