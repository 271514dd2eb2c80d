#pragma once

#include "base/errors.h"

// Lines for developers about the support library's own doings. They go nowhere until a sink is set.
namespace OUtils {

// Called on any thread, also several at once. The text is zero-terminated, holds its own line feed, and lives
// for the call only.
using DebugSink = void (*)(const char* text);

// Null silences again. Returns the earlier sink.
DebugSink setDebugSink(DebugSink sink);

// Formatted as by printf and cut to 1,023 bytes; nothing is formatted without a sink.
void debugOutput(const char* format, ...) TANDREL_PRINTF(1, 2);

}  // namespace OUtils
