#pragma once

#include <string>
#include <string_view>

// The path below the root that a text of the description means: with `/` between its parts, without empty
// ones and dots; empty for the root itself. Throws InstallerError for a path that may lead out of the root.
std::string pathBelowRoot(const std::string& text);

// The alias of an FN element with this text that gives none.
std::string defaultAliasOf(std::string_view text);
