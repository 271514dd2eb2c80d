#include "support/debug_output.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace OUtils {

namespace {

// Constant-initialised and without a destructor: an abandoned thread may print while the process ends.
std::atomic<DebugSink> debugSink{nullptr};

}  // namespace

DebugSink setDebugSink(DebugSink sink) {
    return debugSink.exchange(sink);
}

void debugOutput(const char* format, ...) {
    const DebugSink sink = debugSink.load();
    if (sink == nullptr) {
        return;
    }
    char text[1024] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    sink(text);
}

}  // namespace OUtils
