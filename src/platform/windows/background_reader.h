#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "platform/console_device.h"

namespace platform {

// Reads a pipe or a device on a thread of its own: a read that waits there can't be woken dependably, so
// the caller must be able to abandon it. Reads only on request. `read` is for one
// thread, `interrupt` for any.
class BackgroundReader {
public:
    // Borrows the handle, which must stay open as long as the process reads from it.
    explicit BackgroundReader(HANDLE input);
    ~BackgroundReader();
    BackgroundReader(const BackgroundReader&) = delete;
    BackgroundReader& operator=(const BackgroundReader&) = delete;

    // Waits for the next bytes, at most some thousands; `outBytes` is not empty for kLine and empty else.
    ReadStatus read(std::string& outBytes);
    // The waiting read and all later ones return kInterrupted.
    void interrupt();

private:
    struct State;

    std::shared_ptr<State> state_;  // shared with the thread, which may outlive this object
    bool started_ = false;
};

// One read; false at the end and on failure, with no bytes.
bool readPiece(HANDLE input, std::string& outBytes);

}  // namespace platform
