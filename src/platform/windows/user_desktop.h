#pragma once

#include <string>

namespace platform {

// Has the shell of the desktop open a document, program or URL, as if the user had clicked on it: with the
// user's rights, which this process may have more than. `target` is a URL or a full path. False when there is
// no such shell.
bool openOnUserDesktop(const std::wstring& target);

}  // namespace platform
