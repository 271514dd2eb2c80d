#pragma once

#include <cstdint>

class DialogModel;

// What of a page has to be refreshed when `variable` has changed: a set of RefreshFlag. The name is looked
// for in the conditions' texts without parsing them, so a longer name that contains it counts as well. 0 for
// a null name or a dialog that isn't there; a `sub` that isn't there means the dialog itself.
std::uint32_t getRefreshFlags(DialogModel& dialogs, const char* variable, int dialog, int sub);
