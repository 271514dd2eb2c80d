#pragma once

// The named events by which an uninstaller signals to whoever started it that it runs, and that it is done.
// The one who waits makes them; the uninstaller only signals those that exist.
inline constexpr char kUninstallerStartEvent[] = "OrmelUninstallerStart";
inline constexpr char kUninstallerEndEvent[] = "OrmelUninstallerEnd";
