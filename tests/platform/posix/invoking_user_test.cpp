#include "platform/posix/invoking_user.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"

namespace {

using platform::InvokingUser;
using platform::invokingUser;

constexpr uid_t kNobody = 65534;

class InvokingUserTest : public testing::Test {
protected:
    InvokingUserTest() { forget(); }
    ~InvokingUserTest() override { forget(); }

    static void forget() {
        unsetenv("SUDO_UID");
        unsetenv("PKEXEC_UID");
    }
    static bool isRoot() { return geteuid() == 0; }
    static bool has(const std::vector<std::string>& variables, const std::string& text) {
        return std::find(variables.begin(), variables.end(), text) != variables.end();
    }
};

TEST_F(InvokingUserTest, IsNobodyWithoutSudoAndPkexec) {
    EXPECT_FALSE(invokingUser());
}

TEST_F(InvokingUserTest, IsNobodyWhereRootItselfCalled) {
    setenv("SUDO_UID", "0", 1);
    EXPECT_FALSE(invokingUser());
}

TEST_F(InvokingUserTest, IsNobodyWhereTheNumberIsNone) {
    for (const char* text : {"", " 65534", "65534x", "-1", "99999999999999", "nobody"}) {
        setenv("SUDO_UID", text, 1);
        EXPECT_FALSE(invokingUser()) << text;
    }
}

TEST_F(InvokingUserTest, IsNobodyWhereTheSystemDoesNotKnowTheNumber) {
    setenv("SUDO_UID", "4294967290", 1);
    EXPECT_FALSE(invokingUser());
}

TEST_F(InvokingUserTest, IsTheOneWhoCalled) {
    if (!isRoot()) {
        GTEST_SKIP() << "only root has raised rights";
    }
    for (const char* variable : {"SUDO_UID", "PKEXEC_UID"}) {
        forget();
        setenv(variable, "65534", 1);
        const std::optional<InvokingUser> user = invokingUser();
        ASSERT_TRUE(user) << variable;
        EXPECT_EQ(user->id, kNobody);
        EXPECT_EQ(user->name, "nobody");
        EXPECT_FALSE(user->home.empty());
        EXPECT_NE(std::find(user->groups.begin(), user->groups.end(), user->group), user->groups.end());
    }
}

TEST_F(InvokingUserTest, HasAnEnvironmentOfItsOwn) {
    setenv("SUDO_UID", "1234", 1);
    setenv("TANDREL_TEST_KEPT", "kept", 1);
    const InvokingUser user{1234, 1234, {1234}, "ada", "/home/ada"};
    const std::vector<std::string> variables = platform::environmentOf(user);
    unsetenv("TANDREL_TEST_KEPT");
    EXPECT_TRUE(has(variables, "HOME=/home/ada"));
    EXPECT_TRUE(has(variables, "USER=ada"));
    EXPECT_TRUE(has(variables, "LOGNAME=ada"));
    EXPECT_TRUE(has(variables, "TANDREL_TEST_KEPT=kept"));
    EXPECT_FALSE(has(variables, "SUDO_UID=1234"));
    const auto homes = std::count_if(variables.begin(), variables.end(),
                                     [](const std::string& v) { return v.starts_with("HOME="); });
    EXPECT_EQ(homes, 1);
}

// A program that reports who it is through a pipe.
class StartedAsTest : public InvokingUserTest {
protected:
    void SetUp() override {
        if (!isRoot()) {
            GTEST_SKIP() << "only root can start a program as somebody else";
        }
        ASSERT_EQ(chmod(directory_.path().c_str(), 0755), 0);
        ASSERT_EQ(mkfifo(told_.c_str(), 0600), 0);
        ASSERT_EQ(chown(told_.c_str(), kNobody, kNobody), 0);
        writeTestFile(tool_, "#!/bin/sh\n{ id -u; id -g; id -G; printf '%s\\n' \"$HOME\" \"$@\"; } > '" +
                                 told_ + "'\n");
        ASSERT_EQ(chmod(tool_.c_str(), 0755), 0);
    }
    std::string told() {
        constexpr int kLongEnough = 60000;  // ms
        const int pipe = open(told_.c_str(), O_RDONLY | O_NONBLOCK);
        pollfd waiting{pipe, POLLIN, 0};
        EXPECT_EQ(poll(&waiting, 1, kLongEnough), 1);
        fcntl(pipe, F_SETFL, 0);
        std::string text;
        char buffer[256];
        for (ssize_t count; (count = read(pipe, buffer, sizeof buffer)) > 0;) {
            text.append(buffer, static_cast<std::size_t>(count));
        }
        close(pipe);
        return text;
    }

    const TemporaryDirectory directory_;
    const std::string told_ = directory_.file("told");
    const std::string tool_ = directory_.file("tool");
    const InvokingUser nobody_{kNobody, kNobody, {kNobody}, "nobody", "/nonexistent"};
};

TEST_F(StartedAsTest, AProgramHasTheRightsOfTheUser) {
    ASSERT_TRUE(platform::startDetachedAs(nobody_, {tool_, "an argument"}));
    EXPECT_EQ(told(), "65534\n65534\n65534\n/nonexistent\nan argument\n");
}

TEST_F(StartedAsTest, AProgramThatDoesNotExistIsNotStarted) {
    EXPECT_FALSE(platform::startDetachedAs(nobody_, {directory_.file("none")}));
}

TEST_F(StartedAsTest, AProgramThatTheUserMayNotRunIsNotStarted) {
    ASSERT_EQ(chmod(tool_.c_str(), 0700), 0);
    EXPECT_FALSE(platform::startDetachedAs(nobody_, {tool_}));
}

}  // namespace
