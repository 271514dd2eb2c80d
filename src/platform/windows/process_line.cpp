#include "platform/windows/process_line.h"

#include <tlhelp32.h>

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "platform/windows/wide_text.h"

namespace platform {

namespace {

using Parents = std::unordered_map<DWORD, DWORD>;  // by the number of the child

Parents runningProcesses() {
    Parents parents;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more != 0;
         more = Process32NextW(snapshot.get(), &entry)) {
        parents[entry.th32ProcessID] = entry.th32ParentProcessID;
    }
    return parents;
}

// In 100 ns since 1601; none for a process that can't be opened.
std::optional<std::uint64_t> startOf(DWORD id) {
    const Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    if (!process || GetProcessTimes(process.get(), &created, &ended, &kernel, &user) == 0) {
        return std::nullopt;
    }
    return std::uint64_t{created.dwHighDateTime} << 32 | created.dwLowDateTime;
}

}  // namespace

std::vector<std::uint32_t> processLine(DWORD id) {
    const Parents parents = runningProcesses();
    std::vector<std::uint32_t> line{id};
    for (;;) {
        const auto self = parents.find(line.back());
        const DWORD parent = self == parents.end() ? 0 : self->second;
        if (parent == 0 || !parents.contains(parent) ||
            std::find(line.begin(), line.end(), parent) != line.end()) {
            return line;
        }
        const auto parentStart = startOf(parent);
        const auto childStart = startOf(line.back());
        if (parentStart && childStart && *parentStart > *childStart) {
            return line;
        }
        line.push_back(parent);
    }
}

}  // namespace platform
