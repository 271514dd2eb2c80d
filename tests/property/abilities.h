#pragma once

// What the programs under test are built to stand. What they aren't is left out of the random cases, and the
// test says so; who builds it in sets it to true here.
namespace abilities {

// Installing over an installed product takes over its records.
inline constexpr bool kInstallsOverItself = false;
// An uninstallation that failed keeps what it needs to be repeated, and what a run says is true.
inline constexpr bool kRepeatsUninstallation = false;
// Variables keep their type, joined texts go as whole entries, a key of an INI file comes and goes exactly.
inline constexpr bool kKeepsValues = false;
// Files are replaced by new ones beside them.
inline constexpr bool kReplacesFiles = false;

}  // namespace abilities
