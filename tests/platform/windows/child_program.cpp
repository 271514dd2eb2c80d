#include "platform/windows/child_program.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/program.h"
#include "platform/windows/pipe.h"

namespace {

void letInherit(HANDLE handle) {
    EXPECT_NE(SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT), 0);
}

bool startProcess(const std::string& command, STARTUPINFOW& startup, PROCESS_INFORMATION& outProcess) {
    std::wstring wide = platform::wideOf(command.c_str());
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    for (HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
        letInherit(handle);
    }
    return CreateProcessW(nullptr, wide.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                          &outProcess) != 0;
}

}  // namespace

ChildResult runChild(const std::string& name, const std::string& input) {
    ChildResult result;
    std::string image;
    EXPECT_TRUE(platform::ownImagePath(image));
    Pipe in;
    Pipe out;
    Pipe error;
    STARTUPINFOW startup{};
    startup.hStdInput = in.reader();
    startup.hStdOutput = out.writer();
    startup.hStdError = error.writer();
    PROCESS_INFORMATION process{};
    const std::string command =
        "\"" + image + "\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=" + name;
    if (!startProcess(command, startup, process)) {
        ADD_FAILURE() << "starting the child failed: " << GetLastError();
        return result;
    }
    in.closeReader();
    in.put(input);
    in.closeWriter();
    std::thread errorReader([&] { result.error = error.take(); });
    result.output = out.take();
    errorReader.join();
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    result.exitCode = static_cast<int>(code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return result;
}
