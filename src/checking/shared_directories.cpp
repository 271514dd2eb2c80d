#include "checking/shared_directories.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string>

#include "base/text_functions.h"
#include "checking/path_values.h"

namespace {

// Those of Linux are from the Filesystem Hierarchy Standard 3.0.
constexpr std::string_view kNoPlaces[] = {
    "/bin",  "/boot", "/dev",  "/home", "/lib", "/lib64", "/media", "/mnt",     "/proc",
    "/root", "/run",  "/sbin", "/sys",  "/tmp", "/usr",   "/var",   "/var/tmp",
};
constexpr std::string_view kShared[] = {
    "/etc",       "/opt",           "/srv",           "/usr/bin",       "/usr/include",
    "/usr/lib",   "/usr/lib64",     "/usr/libexec",   "/usr/sbin",      "/usr/share",
    "/usr/local", "/usr/local/bin", "/usr/local/etc", "/usr/local/lib", "/usr/local/share",
    "/var/cache", "/var/lib",       "/var/log",       "/var/opt",       "/var/spool",
};
// Below a drive.
constexpr std::string_view kNoPlacesOfWindows[] = {
    "/windows",       "/windows/system32",    "/windows/syswow64", "/windows/temp",
    "/program files", "/program files (x86)", "/programdata",      "/users",
};
constexpr std::string_view kNoPlacesOfEnvironment[] = {
    "systemroot",
    "systemroot/system32",
    "windir",
    "windir/system32",
    "systemdrive",
    "programfiles",
    "programfiles(x86)",
    "programw6432",
    "programdata",
    "allusersprofile",
    "temp",
    "tmp",
};
constexpr std::string_view kSharedOfEnvironment[] = {
    "appdata", "commonprogramfiles", "home",          "localappdata",
    "public",  "userprofile",        "xdg_data_home", "xdg_config_home",
};
constexpr std::string_view kTemporary = "[temp_dir]";

bool contains(std::span<const std::string_view> list, std::string_view text) {
    return std::ranges::find(list, text) != list.end();
}

bool hasDrive(std::string_view path) {
    return path.size() > 1 && path[1] == ':';
}

// The path with the name of an environment variable in place of its first reference; empty without one.
std::string environmentPath(std::string_view path, const PathValues& values) {
    const std::size_t close = path.find(']');
    if (!path.starts_with('[') || close == std::string_view::npos) {
        return {};
    }
    const std::string name = values.environmentOf(path.substr(1, close - 1));
    return name.empty() ? name : name + OUtils::toLowerAscii(path.substr(close + 1));
}

}  // namespace

bool isRootPath(std::string_view path) {
    if (hasDrive(path)) {
        return path.size() == 2 || path.substr(2) == "/";
    }
    const bool isShare = path.starts_with("//") && std::ranges::count(path.substr(2), '/') < 2;
    return path == "/" || isShare;
}

bool isNoPlaceForFiles(std::string_view path, const PathValues& values) {
    return isRootPath(path) || path == kTemporary || contains(kNoPlaces, path) ||
           (hasDrive(path) && contains(kNoPlacesOfWindows, OUtils::toLowerAscii(path.substr(2)))) ||
           contains(kNoPlacesOfEnvironment, environmentPath(path, values));
}

bool isSharedDirectory(std::string_view path, const PathValues& values) {
    return isNoPlaceForFiles(path, values) || contains(kShared, path) ||
           contains(kSharedOfEnvironment, environmentPath(path, values));
}
