#include "ui/gui/start/carried_toolkit.h"

#include <cstddef>
#include <cstdlib>

#include "platform/memory_library.h"
#include "ui/gui/start/module/gzip_expansion.h"

// The module, compressed by gzip, as read-only data of the program. Most runs don't read it.
__asm__(
    ".pushsection .rodata.window_module, \"a\", @progbits\n"
    ".globl tandrelWindowModule, tandrelWindowModuleEnd\n"
    ".hidden tandrelWindowModule, tandrelWindowModuleEnd\n"
    "tandrelWindowModule: .incbin \"" TANDREL_WINDOW_MODULE
    "\"\n"
    "tandrelWindowModuleEnd:\n"
    ".popsection\n");

extern "C" {
extern const unsigned char tandrelWindowModule[];
extern const unsigned char tandrelWindowModuleEnd[];
}

namespace {

std::string_view carriedModule() {
    return {reinterpret_cast<const char*>(tandrelWindowModule),
            static_cast<std::size_t>(tandrelWindowModuleEnd - tandrelWindowModule)};
}

bool isDisplayNamed() {
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return true;
        }
    }
    return false;
}

}  // namespace

Toolkit* carriedToolkit(std::string& outReason) {
    if (!isDisplayNamed()) {
        outReason = "no display: neither DISPLAY nor WAYLAND_DISPLAY is set";
        return nullptr;
    }
    std::string module;
    if (!expandGzip(carriedModule(), module)) {
        outReason = "the module of the window is damaged";
        return nullptr;
    }
    void* const function = platform::loadMemoryLibrary(module, "tandrelToolkit", outReason);
    if (function == nullptr) {
        return nullptr;
    }
    Toolkit* const toolkit = reinterpret_cast<decltype(&tandrelToolkit)>(function)(kToolkitVersion);
    if (toolkit == nullptr) {
        outReason = "the module of the window is of another version";
    }
    return toolkit;
}
