#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/named_events.h"
#include "platform/platform.h"
#include "support/debug_log.h"

// Keeps the runs apart that work on one product: setups of it, whatever the version, and its uninstallations.
// Ends with the process, however that ends; so who gets the lock knows that no other such run is alive.
class ProductLock {
public:
    enum class Result {
        kTaken,
        kPartOfAnother,  // the run that holds it started this one
        kBusy,
    };

    // What the machine refers to is borrowed and outlives this object.
    ProductLock(const platform::Platform& machine, DebugLog debugLog);
    ~ProductLock();

    // Doesn't wait for longer than a run needs that is just ending. Where the system has no such lock, that
    // is a line in the debug log, and kTaken.
    Result take(std::string_view product);
    void release();

private:
    bool isPartOfAnother();

    platform::Platform machine_;
    DebugLog debugLog_;
    std::unique_ptr<platform::NamedLock> lock_;
};

// Held while a journal is made until its notes say whose it is, and while journals are removed that nobody
// can be asked about. Null when it isn't to be had within this time.
std::unique_ptr<platform::NamedLock> lockJournals(platform::NamedEvents& events, std::uint32_t milliseconds);
