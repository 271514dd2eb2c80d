#pragma once

#include "support/p_console.h"

// The session's debug log, as the engine writes to it: a pointer that may be null at any time, which turns
// every line off, or a console of its own.
class SessionLog {
public:
    // Both are borrowed and outlive this object.
    SessionLog(PConsole*& console) : slot_(&console) {}    // NOLINT(google-explicit-constructor)
    SessionLog(PConsole& console) : console_(&console) {}  // NOLINT(google-explicit-constructor)

    // Never null.
    PConsole* operator->() const {
        PConsole* console = slot_ == nullptr ? console_ : *slot_;
        return console == nullptr ? &silent() : console;
    }

private:
    static PConsole& silent() {
        static PConsole console;
        console.setEnabled(false);
        return console;
    }

    PConsole** slot_ = nullptr;
    PConsole* console_ = nullptr;
};
