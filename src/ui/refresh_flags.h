#pragma once

#include <cstdint>
#include <string_view>

class DialogModel;

// What of a page has to be refreshed when `variable` has changed: a set of RefreshFlag. The name is looked
// for in the texts of the conditions without parsing them, so a longer name that contains it counts as well,
// and an empty name is in every condition. 0 for a dialog that isn't there; a `sub` that isn't there means
// the dialog itself.
std::uint32_t getRefreshFlags(DialogModel& dialogs, std::string_view variable, int dialog, int sub);
