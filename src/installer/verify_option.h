#pragma once

#include <optional>
#include <string>

class StartMessages;
namespace platform {
struct Platform;
}

// The option -verify: compares what is on the machine with the action log of a product, and changes nothing
// but the receipt.
struct VerifyRequest {
    std::string log;                     // its path
    std::optional<std::string> receipt;  // where the list goes besides
    bool isQuiet = false;                // only what keeps it from being done is said
};

// Prints the list to standard output. The exit code: 0 when everything is as it was installed, 1 when
// something is not or the log is damaged, -1 when the log can't be read at all or the receipt not be written,
// which is said.
int verifyInstallation(const VerifyRequest& request, platform::Platform& platform, StartMessages& messages);
