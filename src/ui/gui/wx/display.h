#pragma once

#include <string>
#include <type_traits>

// The connection to the screen, which can break at any time on a system where it is one. Has one
// implementation for each system (gtk/, msw/).
namespace display {

// Before wxWidgets starts, where the environment names a display on a system whose displays have names.
// False: `outReason` gets one line. The locale of the process stays as it is, except for the character set.
bool open(std::string& outReason);

// From any thread.
bool isLost();

// What was changed is to be seen now, and not only when the next event is waited for.
void flush();

// Pixels of the screen in a unit of length.
double density();

// Calls `work(data)`. Whatever calls the window system is called through here, on the one thread of the
// window; calls nest. False: the display has gone, before the call or during it. Then `work` was left where
// it stood, and everything on the stack up to here is abandoned as it was: no destructor runs, because it
// would call a window system that was interrupted in the middle of something.
bool use(void (*work)(void*), void* data);

// The same for anything that can be called without arguments.
template <typename Work>
bool use(Work&& work) {
    using Called = std::remove_reference_t<Work>;
    return use([](void* called) { (*static_cast<Called*>(called))(); }, &work);
}

// To be called before control goes back to the window system. Where the display has gone, it doesn't: the
// innermost `use` returns instead.
void leaveIfLost();

}  // namespace display
