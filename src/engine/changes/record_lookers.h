#pragma once

#include <span>

#include "engine/changes/record_look.h"

// A row for each tag of the table of changes (engine/changes/change_table.h).
std::span<const LookerKind> lookerKinds();
