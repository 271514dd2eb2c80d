#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "platform/clock.h"
#include "platform/virtual_display.h"

namespace {

bool isRunning(const std::string& display) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = "/tmp/.X11-unix/X" + display.substr(1);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int end = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isAnswered = connect(end, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(end);
    return isAnswered;
}

TEST(VirtualDisplayEnd, ComesWithTheObject) {
    std::string reason;
    auto display = platform::startVirtualDisplay(320, 200, reason);
    ASSERT_NE(display, nullptr) << reason;
    const std::string name = display->name();
    EXPECT_TRUE(isRunning(name));
    display.reset();
    EXPECT_FALSE(isRunning(name));
}

TEST(VirtualDisplayEnd, ComesWithAProcessThatIsKilled) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        std::string reason;
        const auto display = platform::startVirtualDisplay(320, 200, reason);
        const std::string name = display == nullptr ? "!" : display->name();
        if (write(ends[1], name.data(), name.size()) < 1) {
            _exit(1);
        }
        pause();
        _exit(0);
    }
    char name[16] = {};
    ASSERT_GT(read(ends[0], name, sizeof name - 1), 0);
    close(ends[0]);
    close(ends[1]);
    ASSERT_EQ(name[0], ':');
    EXPECT_TRUE(isRunning(name));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::uint64_t end = platform::monotonicMilliseconds() + 60000;
    while (isRunning(name) && platform::monotonicMilliseconds() < end) {
        platform::sleepMilliseconds(10);
    }
    EXPECT_FALSE(isRunning(name));
}

TEST(VirtualDisplayEnd, NamesThePackageThatIsMissing) {
    const std::string path = std::getenv("PATH");
    setenv("PATH", "/nowhere", 1);
    std::string reason;
    EXPECT_EQ(platform::startVirtualDisplay(320, 200, reason), nullptr);
    setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(reason, "the program Xvfb is missing; on Debian it is in the package xvfb");
}

}  // namespace
