#pragma once

// Where a session runs from, and what it was started with. Sizes are in bytes with the terminator; what
// doesn't fit is cut.
class SessionPaths {
public:
    virtual ~SessionPaths() = default;

    // The directory that was set, or else the running program's, without a separator at its end. 0, or -1
    // when it isn't known; the buffer holds the empty text then.
    virtual int getApplicationPath(char* buffer, int size) = 0;
    // The file of answers that the run was started with, the empty text without one. Always 0.
    virtual int getConfigFile(char* buffer, int size) = 0;
};
