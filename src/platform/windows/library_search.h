#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// Where libraries and programs come from. Left to itself the system looks beside the program first and in the
// current directory, where a setup finds whatever was downloaded.
namespace platform {

// From now on libraries that are named without a path come from the system's directory alone. What the
// program is linked to has been loaded before: only libraries that the system itself has in its list of known
// ones may be linked.
void searchLibrariesInSystemOnly();

// Loads a library of the system by its full path; null on failure. It stays until the process ends.
HMODULE loadSystemLibrary(std::wstring_view name);

// The full path of the program that `name`, which has neither directory nor drive, means: from the system's
// directory or an absolute directory of PATH, ".exe" being added where there is no extension. Empty when
// there is none.
std::wstring findProgram(const std::wstring& name);

}  // namespace platform
