#pragma once

#include <string>
#include <string_view>

namespace platform {
class Environment;
}

// The directory that a person means who types this: `~` and `~/name` are, or lie in, the home directory
// ($USERPROFILE, else $HOME), and a relative path counts from the current directory. What is neither, what
// can't be resolved, and what holds a variable in brackets stays as it is.
std::string typedDirectory(std::string_view typed, platform::Environment& environment);
