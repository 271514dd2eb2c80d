#pragma once

class CheckContext;
class PathValues;

// Shortcuts, variables of the environment and values of the registry that can't be made as they are
// described, or not on every system.
void checkSettings(const CheckContext& context, const PathValues& paths);
