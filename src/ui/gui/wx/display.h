#pragma once

#include <string>

// The connection to the screen, which can break at any time on a system where it is one. Has one
// implementation for each system (gtk/, msw/).
namespace display {

// Thrown out of whatever called the window system, through code that isn't ours.
struct Lost {};

// Before wxWidgets starts, where the environment names a display on a system whose displays have names.
// False: `outReason` gets one line. The locale of the process stays as it is, except for the character set.
bool open(std::string& outReason);

// From any thread.
bool isLost();

// Pixels of the screen in a unit of length.
double density();

// While it lives, a lost display throws nothing: what it happens in finishes without effect. For the ends of
// objects, which must not be left by an exception.
class Uninterrupted {
public:
    Uninterrupted();
    ~Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
};

}  // namespace display
