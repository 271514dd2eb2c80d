#include "platform/processes.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>

#include "platform/windows/debug_privilege.h"
#include "platform/windows/library_search.h"
#include "platform/windows/process_line.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

// What the system itself runs as.
constexpr DWORD kIdleProcess = 0;
constexpr DWORD kSystemProcess = 4;

bool listIds(std::vector<DWORD>& outIds) {
    outIds.resize(1024);
    for (;;) {
        DWORD used = 0;
        const auto size = static_cast<DWORD>(outIds.size() * sizeof(DWORD));
        if (EnumProcesses(outIds.data(), size, &used) == 0) {
            return false;
        }
        if (used < size) {
            outIds.resize(used / sizeof(DWORD));
            return true;
        }
        outIds.resize(outIds.size() * 2);
    }
}

// Calls `query(buffer, size)`, which returns the length it wrote or 0, with room for every path.
template <typename Query>
std::wstring pathBy(Query query) {
    std::wstring path(MAX_PATH, L'\0');
    while (path.size() <= 0x10000) {
        const DWORD length = query(path.data(), static_cast<DWORD>(path.size()));
        if (length + 1 < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
    return std::wstring();
}

// The path as the process's own loader knows it; a process that is only just starting has no modules yet.
std::wstring imagePathOf(HANDLE process) {
    HMODULE module = nullptr;
    DWORD needed = 0;
    std::wstring path;
    if (EnumProcessModules(process, &module, sizeof(module), &needed) != 0) {
        path = pathBy([process, module](wchar_t* buffer, DWORD size) {
            return GetModuleFileNameExW(process, module, buffer, size);
        });
    }
    if (path.empty()) {
        path = pathBy([process](wchar_t* buffer, DWORD size) {
            DWORD length = size;
            if (QueryFullProcessImageNameW(process, 0, buffer, &length) != 0) {
                return length;
            }
            return GetLastError() == ERROR_INSUFFICIENT_BUFFER ? size : 0;
        });
    }
    return path;
}

std::wstring firstWordOf(const std::wstring& command) {
    const bool quoted = command.starts_with(L'"');
    const std::size_t start = quoted ? 1 : 0;
    const std::size_t end = quoted ? command.find(L'"', start) : command.find_first_of(L" \t");
    return command.substr(start, end == std::wstring::npos ? end : end - start);
}

// False when the command names a program without a path and there is none of that name. `outProgram` is then
// left to the system to find in the command, as it is where the path is given.
bool resolveProgram(const std::wstring& command, std::wstring& outProgram) {
    outProgram.clear();
    const std::wstring name = firstWordOf(command);
    if (name.find_first_of(L"\\/:") != std::wstring::npos) {
        return true;
    }
    outProgram = findProgram(name);
    return !outProgram.empty();
}

// By what the process may do now: a user whose rights are withheld is no administrator.
bool hasAdministratorsToken(HANDLE process) {
    HANDLE token = nullptr;
    if (OpenProcessToken(process, TOKEN_QUERY | TOKEN_DUPLICATE, &token) == 0) {
        return false;
    }
    const Handle owner(token);
    HANDLE copy = nullptr;
    if (DuplicateToken(token, SecurityIdentification, &copy) == 0) {
        return false;
    }
    const Handle copyOwner(copy);
    unsigned char administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof(administrators);
    BOOL isMember = FALSE;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) != 0 &&
           CheckTokenMembership(copy, administrators, &isMember) != 0 && isMember != 0;
}

class WindowsChildProcess : public ChildProcess {
public:
    explicit WindowsChildProcess(HANDLE process) : process_(process) {}

    bool wait(std::uint32_t milliseconds) override {
        return WaitForSingleObject(process_.get(), milliseconds) == WAIT_OBJECT_0;
    }

    int exitCode() override {
        DWORD code = 0;
        return GetExitCodeProcess(process_.get(), &code) != 0 ? static_cast<int>(code) : -1;
    }

private:
    Handle process_;
};

class WindowsProcesses : public Processes {
public:
    bool list(std::vector<ProcessInfo>& outProcesses) override {
        outProcesses.clear();
        std::vector<DWORD> ids;
        if (!listIds(ids)) {
            return false;
        }
        const DebugPrivilege privilege;
        for (const DWORD id : ids) {
            const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id));
            const std::string path = process ? utf8Of(imagePathOf(process.get())) : std::string();
            if (!path.empty()) {
                outProcesses.push_back({id, path.substr(path.find_last_of('\\') + 1), path});
            }
        }
        return true;
    }

    bool terminate(std::uint32_t id, std::uint32_t /*politeMilliseconds*/) override {
        const std::vector<std::uint32_t> line = ownLine();
        if (id == kIdleProcess || id == kSystemProcess ||
            std::find(line.begin(), line.end(), id) != line.end()) {
            return false;
        }
        const DebugPrivilege privilege;
        const Handle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
        // The number of a process that has ended may still lead to it.
        return process && WaitForSingleObject(process.get(), 0) == WAIT_TIMEOUT &&
               TerminateProcess(process.get(), 0) != 0;
    }

    std::unique_ptr<ChildProcess> start(std::string_view commandLine, std::string_view workDirectory,
                                        int& outError) override {
        std::wstring command = wideOf(commandLine);  // the system writes into it
        std::wstring program;
        if (!resolveProgram(command, program)) {
            outError = ERROR_FILE_NOT_FOUND;
            return nullptr;
        }
        const bool hasDirectory = !workDirectory.empty();
        const std::wstring directory = hasDirectory ? systemPath(workDirectory) : std::wstring();
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION started{};
        if (CreateProcessW(program.empty() ? nullptr : program.c_str(), command.data(), nullptr, nullptr,
                           FALSE, 0, nullptr, hasDirectory ? directory.c_str() : nullptr, &startup,
                           &started) == 0) {
            outError = failureNumber();
            return nullptr;
        }
        CloseHandle(started.hThread);
        outError = 0;
        return std::make_unique<WindowsChildProcess>(started.hProcess);
    }

    std::uint32_t currentId() override { return GetCurrentProcessId(); }
    std::vector<std::uint32_t> ownLine() override { return processLine(GetCurrentProcessId()); }

    bool isAdministrators(std::uint32_t id) override {
        const DebugPrivilege privilege;
        const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, id));
        return process && hasAdministratorsToken(process.get());
    }
};

}  // namespace

Processes& systemProcesses() {
    static WindowsProcesses processes;
    return processes;
}

}  // namespace platform
