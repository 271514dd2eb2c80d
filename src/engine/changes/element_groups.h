#pragma once

#include <cstdint>
#include <functional>

#include "description/vocabulary.h"
#include "engine/changes/change.h"

// Makes the change that one child of a group asks for. False when it failed.
using ChildChange = std::function<bool(std::int32_t child)>;

// Visits each group of that name whose condition holds, in document order, and its children whose conditions
// hold; the lines of the front end are flushed after each group. A failure ends its group, and the next group
// is still visited. False when any failed.
bool applyGroups(const ChangeContext& context, vocabulary::ElementName group, const ChildChange& change);
