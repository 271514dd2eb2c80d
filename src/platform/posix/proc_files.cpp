#include "platform/posix/proc_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <memory>
#include <string_view>

#include "base/path_functions.h"
#include "platform/posix/system_calls.h"

namespace platform::proc_files {

namespace {

// The kernel cuts a process's name to this length.
constexpr std::size_t kMaxKernelName = 15;

std::string procPath(pid_t id, const char* file) {
    return "/proc/" + std::to_string(id) + "/" + file;
}

// The beginning of a file of /proc, which is as much as anyone here looks at.
std::string readStart(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    char buffer[4096];
    const ssize_t size =
        file.isOpen() ? retryInterrupted([&] { return read(file.get(), buffer, sizeof buffer); }) : 0;
    return std::string(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
}

// The fields of "stat" after the name, which may itself contain blanks and brackets: "S 1 ...", state and
// parent first.
std::string fieldsBehindName(pid_t id) {
    const std::string text = readStart(procPath(id, "stat"));
    const std::size_t end = text.rfind(')');
    return end != std::string::npos && end + 2 < text.size() ? text.substr(end + 2) : "";
}

bool readNumber(std::string_view text, pid_t& outNumber) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), outNumber);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

struct DirectoryCloser {
    void operator()(DIR* directory) const { closedir(directory); }
};

}  // namespace

bool processIds(std::vector<pid_t>& outIds) {
    const std::unique_ptr<DIR, DirectoryCloser> directory(opendir("/proc"));
    if (directory == nullptr) {
        return false;
    }
    while (const dirent* entry = readdir(directory.get())) {
        pid_t id = 0;
        if (readNumber(entry->d_name, id)) {
            outIds.push_back(id);
        }
    }
    return true;
}

bool isAlive(pid_t id) {
    const std::string fields = fieldsBehindName(id);
    return !fields.empty() && fields[0] != 'Z' && fields[0] != 'X';
}

pid_t parentOf(pid_t id) {
    const std::string fields = fieldsBehindName(id);
    const std::size_t start = 2;
    const std::size_t end = fields.find(' ', start);
    pid_t parent = 0;
    const bool known =
        end != std::string::npos && readNumber(std::string_view(fields).substr(start, end - start), parent);
    return known ? parent : 0;
}

std::string executableOf(pid_t id) {
    char buffer[4096];
    const ssize_t length = readlink(procPath(id, "exe").c_str(), buffer, sizeof buffer);
    std::string path(buffer, length > 0 ? static_cast<std::size_t>(length) : 0);
    // The kernel's mark for a file that isn't there any more, unless a file is really called so.
    constexpr std::string_view kDeleted = " (deleted)";
    if (path.ends_with(kDeleted) && access(path.c_str(), F_OK) != 0) {
        path.resize(path.size() - kDeleted.size());
    }
    return path;
}

std::string nameOf(pid_t id) {
    const std::string arguments = readStart(procPath(id, "cmdline"));
    if (arguments.empty()) {
        return "";
    }
    std::string name = readStart(procPath(id, "comm"));
    if (!name.empty() && name.back() == '\n') {
        name.pop_back();
    }
    const std::string_view first = std::string_view(arguments).substr(0, arguments.find('\0'));
    const std::string_view program = OUtils::lastPathComponent(first);
    return name.size() == kMaxKernelName && program.starts_with(name) ? std::string(program) : name;
}

bool isRoots(pid_t id) {
    return readStart(procPath(id, "status")).find("\nUid:\t0\t0\t0\t0\n") != std::string::npos;
}

}  // namespace platform::proc_files
