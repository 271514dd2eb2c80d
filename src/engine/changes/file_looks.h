#pragma once

#include <memory>

#include "engine/changes/record_look.h"

// The looks at what has a path of its own. The context's parts outlive the results.

// FILE. A file is as it was made if its digest is known to be one that the installation wrote; where nothing
// is known of it, its being there counts, and the note says so.
std::unique_ptr<RecordLooker> makeFileLooker(const LookContext& context);

// DIR, each level of it, the deepest first.
std::unique_ptr<RecordLooker> makeDirectoryLooker(const LookContext& context);

// SHORTCUT. What a shortcut leads to isn't known, so its being there counts.
std::unique_ptr<RecordLooker> makeShortcutLooker(const LookContext& context);
