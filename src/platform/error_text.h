#pragma once

#include <string>

// Why a call of the system failed, in the system's own English words, whatever language the user has: "No
// space left on device", "The system cannot find the path specified." One line without an end. "error 4711"
// where the system has no words for the number.
namespace platform {

// `status` is a number of the system (errno, GetLastError, an HRESULT), as file operations, processes and
// shell objects give it.
std::string errorText(int status);

// `status` is one of a Registry, whose numbers are those of Windows on every system.
std::string registryErrorText(int status);

}  // namespace platform
