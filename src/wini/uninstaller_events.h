#pragma once

// The named events by which an uninstaller tells whoever started it that it runs and that it is through. The
// one who waits makes them; the uninstaller only signals those that exist.
inline constexpr char kUninstallerStartEvent[] = "OrmelUninstallerStart";
inline constexpr char kUninstallerEndEvent[] = "OrmelUninstallerEnd";
