#include "platform/windows/process_line.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/processes.h"

namespace {

using platform::processLine;

TEST(ProcessLine, BeginsWithTheProcess) {
    const std::vector<std::uint32_t> line = processLine(GetCurrentProcessId());
    ASSERT_FALSE(line.empty());
    EXPECT_EQ(line[0], GetCurrentProcessId());
    EXPECT_EQ(platform::systemProcesses().ownLine(), line);
}

TEST(ProcessLine, LeadsFromAChildToThisProcess) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION child{};
    wchar_t command[] = L"cmd.exe /c exit 0";
    // It doesn't run before its line has been looked at.
    ASSERT_NE(CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                             &startup, &child),
              0);
    const std::vector<std::uint32_t> line = processLine(child.dwProcessId);
    const std::vector<std::uint32_t> own = processLine(GetCurrentProcessId());
    ResumeThread(child.hThread);
    WaitForSingleObject(child.hProcess, INFINITE);
    CloseHandle(child.hThread);
    CloseHandle(child.hProcess);
    ASSERT_EQ(line.size(), own.size() + 1);
    EXPECT_EQ(line[0], child.dwProcessId);
    EXPECT_TRUE(std::equal(own.begin(), own.end(), line.begin() + 1));
}

TEST(ProcessLine, IsOnlyTheProcessWhenNobodyKnowsIt) {
    EXPECT_EQ(processLine(0xFFFFFFF0U), std::vector<std::uint32_t>{0xFFFFFFF0U});
}

}  // namespace
