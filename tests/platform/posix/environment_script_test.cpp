#include "platform/posix/environment_script.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <random>

#include "fakes/temporary_directory.h"
#include "platform/environment.h"
#include "platform/memory/memory_registry.h"
#include "platform/posix/sqlite_registry.h"
#include "platform/shell_objects.h"
#include "platform/system_environment.h"

namespace {

using platform::environmentScriptOf;
using platform::EnvironmentScriptPlace;
using platform::EnvironmentVariable;

constexpr auto kMachine = platform::RegistryRoot::kLocalMachine;
constexpr auto kNative = platform::RegistryView::kNative;

// What a command prints.
std::string outputOf(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    EXPECT_NE(pipe, nullptr);
    std::string output;
    char buffer[4096];
    for (std::size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
        output.append(buffer, count);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

class EnvironmentScriptTest : public testing::Test {
protected:
    // The variable as a program sees it that a login shell starts, whose own PATH is `path`.
    std::string seen(const std::string& script, const std::string& name,
                     const std::string& path = "/usr/bin:/bin", const char* options = "-eu") {
        writeTestFile(directory_.file("script"), script);
        return outputOf("env -i PATH='" + path + "' /bin/sh " + options +
                        " -c '. \"$0\"; . \"$0\"; /usr/bin/printenv " + name + " || test $? = 1' '" +
                        directory_.file("script") + "'");
    }
    std::string seenValue(const std::string& value) {
        return seen(environmentScriptOf({{"DEMO", value}}), "DEMO");
    }

    TemporaryDirectory directory_;
};

TEST_F(EnvironmentScriptTest, SetsVariablesForPrograms) {
    const std::string script = environmentScriptOf({{"DEMO", "some text"}, {"_d2", "x"}});
    EXPECT_EQ(seen(script, "DEMO"), "some text\n");
    EXPECT_EQ(seen(script, "_d2"), "x\n");
    EXPECT_NE(script.find("export DEMO='some text'\nexport _d2='x'\n"), std::string::npos);
}

TEST_F(EnvironmentScriptTest, RunsNoValueAsCode) {
    const std::string mark = directory_.file("mark");
    for (const std::string& value :
         {"$(touch " + mark + ")", "`touch " + mark + "`", "' && touch " + mark + " && '",
          "'\ntouch " + mark + "\n'", std::string("a\nb"), std::string("\\'\\"),
          std::string("\"x\" $HOME ${HOME} !! # & | < > ~ *"), std::string("'"), std::string("''''"),
          std::string("\xff\x01 \xc3\xa9")}) {
        EXPECT_EQ(seenValue(value), value + "\n");
        const std::string path = seen(environmentScriptOf({{"PATH", "/x" + value}}), "PATH");
        EXPECT_EQ(path.substr(0, 13), "/usr/bin:/bin") << value;
        EXPECT_FALSE(testFileExists(mark)) << value;
    }
}

TEST_F(EnvironmentScriptTest, RunsNoRandomValueAsCode) {
    constexpr char kBytes[] = "'\"\\$`(){}\n #!*?[]~=|&<>ab";
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        std::string value = "v";
        for (unsigned count = random() % 40; count > 0; --count) {
            value += kBytes[random() % (sizeof kBytes - 1)];
        }
        EXPECT_EQ(seenValue(value), value + "\n");
    }
}

TEST_F(EnvironmentScriptTest, MakesListsOfShells) {
    EXPECT_EQ(seenValue("/a;/b c;/d"), "/a:/b c:/d\n");
    EXPECT_EQ(seenValue(";/a;;/b;"), "/a:/b\n");
    EXPECT_EQ(seenValue("/a:/b"), "/a:/b\n");
}

TEST_F(EnvironmentScriptTest, WritesPathsOfWhatIsThereAsThisSystemDoes) {
    const std::string path = directory_.path();
    std::string installed = path;
    std::replace(installed.begin(), installed.end(), '/', '\\');
    EXPECT_EQ(seenValue(installed), path + "\n");
    EXPECT_EQ(seenValue("\\d+;" + installed + ";\\none\\there"), "\\d+:" + path + ":\\none\\there\n");
    EXPECT_EQ(seenValue("text\\with\\some"), "text\\with\\some\n");
}

TEST_F(EnvironmentScriptTest, LeavesOutWhatHasNoValue) {
    EXPECT_EQ(environmentScriptOf({}), "");
    EXPECT_EQ(environmentScriptOf({{"A", ""}, {"B", ";;"}, {"C", std::string("a\0b", 3)}, {"PATH", "x;;y"}}),
              "");
}

TEST_F(EnvironmentScriptTest, LeavesOutNamesThatNoShellTakes) {
    for (const char* name :
         {"", "1A", "A B", "A-B", "A;touch x", "A=B", "$(x)", "A\nB", "\xc3\xa9", "ProgramFiles(x86)", "UID",
          "EUID", "PPID", "SHELLOPTS", "BASHOPTS", "BASH_VERSINFO"}) {
        EXPECT_EQ(environmentScriptOf({{name, "v"}}), "") << name;
    }
}

TEST_F(EnvironmentScriptTest, JoinsDirectoriesToThePathOfTheLogin) {
    const std::string script =
        environmentScriptOf({{"PATH", "/opt/a;\"C:\\opt\\b c\";;/bin;relative;.;%X%;/e:/f"}});
    EXPECT_EQ(seen(script, "PATH"), "/usr/bin:/bin:/opt/a:/opt/b c:/e:/f\n");
    EXPECT_EQ(seen(script, "PATH", ""), "/opt/a:/opt/b c:/bin:/e:/f\n");
    EXPECT_EQ(seen(script, "PATH", "/opt/a2:/usr/bin"), "/opt/a2:/usr/bin:/opt/a:/opt/b c:/bin:/e:/f\n");
}

class PublishedEnvironmentTest : public EnvironmentScriptTest {
protected:
    PublishedEnvironmentTest() { umask(077); }
    ~PublishedEnvironmentTest() override { umask(oldMask_); }
    void SetUp() override { ASSERT_EQ(mkdir(directory_.file("profile.d").c_str(), 0755), 0); }

    void set(const char* name, const std::string& value) { registry_.addText(kMachine, kKey, name, value); }
    int publish() { return publishEnvironment(registry_, place_); }
    std::string linkTarget() {
        char target[4096];
        const ssize_t length = readlink(place_.link.c_str(), target, sizeof target);
        return length < 0 ? "" : std::string(target, static_cast<std::size_t>(length));
    }
    bool nothingElseIsLeft() {
        return outputOf("ls -A '" + directory_.path() + "' | grep tandrel- || test $? = 1").empty();
    }

    static constexpr const char* kKey = platform::kSystemEnvironmentKey;
    const mode_t oldMask_ = umask(022);
    MemoryRegistry registry_;
    const EnvironmentScriptPlace place_{directory_.file("environment.sh"),
                                        directory_.file("profile.d/tandrel-environment.sh")};
};

TEST_F(PublishedEnvironmentTest, IsAScriptThatAllCanReadThroughALink) {
    set("DEMO", "x;y");
    EXPECT_EQ(publish(), 0);
    struct stat status {};
    ASSERT_EQ(lstat(place_.script.c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777, 0644U);
    EXPECT_EQ(linkTarget(), place_.script);
    EXPECT_EQ(seen(readTestFile(place_.link), "DEMO"), "x:y\n");
    set("DEMO", "z");
    EXPECT_EQ(publish(), 0);
    EXPECT_EQ(seen(readTestFile(place_.link), "DEMO"), "z\n");
    EXPECT_TRUE(nothingElseIsLeft());
}

TEST_F(PublishedEnvironmentTest, GoesWithTheLastVariable) {
    EXPECT_EQ(publish(), 0);
    set("DEMO", "x");
    EXPECT_EQ(publish(), 0);
    ASSERT_TRUE(testFileExists(place_.script));
    ASSERT_EQ(registry_.deleteValue(kMachine, kKey, kNative, "DEMO"), 0);
    EXPECT_EQ(publish(), 0);
    EXPECT_FALSE(testFileExists(place_.script));
    EXPECT_EQ(linkTarget(), "");
    EXPECT_EQ(publish(), 0);
}

TEST_F(PublishedEnvironmentTest, LeavesAForeignFileAtTheLinksPlaceAlone) {
    writeTestFile(place_.link, "mine");
    set("DEMO", "x");
    EXPECT_EQ(publish(), EEXIST);
    EXPECT_EQ(readTestFile(place_.link), "mine");
    EXPECT_TRUE(testFileExists(place_.script));
    ASSERT_EQ(registry_.deleteValue(kMachine, kKey, kNative, "DEMO"), 0);
    EXPECT_EQ(publish(), 0);
    EXPECT_EQ(readTestFile(place_.link), "mine");
}

TEST_F(PublishedEnvironmentTest, LeavesAForeignLinkAlone) {
    writeTestFile(directory_.file("other"), "mine");
    ASSERT_EQ(symlink(directory_.file("other").c_str(), place_.link.c_str()), 0);
    set("DEMO", "x");
    EXPECT_EQ(publish(), EEXIST);
    ASSERT_EQ(registry_.deleteValue(kMachine, kKey, kNative, "DEMO"), 0);
    EXPECT_EQ(publish(), 0);
    EXPECT_EQ(linkTarget(), directory_.file("other"));
    EXPECT_EQ(readTestFile(directory_.file("other")), "mine");
}

TEST_F(PublishedEnvironmentTest, NeedsNoDirectoryForTheLink) {
    set("DEMO", "x");
    EXPECT_EQ(publishEnvironment(registry_, {place_.script, directory_.file("none/link")}), 0);
    EXPECT_EQ(publishEnvironment(registry_, {place_.script, ""}), 0);
    EXPECT_TRUE(testFileExists(place_.script));
}

TEST_F(PublishedEnvironmentTest, ReplacesALinkInTheScriptsPlaceWithoutFollowingIt) {
    writeTestFile(directory_.file("precious"), "keep");
    ASSERT_EQ(symlink("precious", place_.script.c_str()), 0);
    set("DEMO", "x");
    EXPECT_EQ(publish(), 0);
    EXPECT_EQ(readTestFile(directory_.file("precious")), "keep");
}

TEST_F(PublishedEnvironmentTest, StaysAsItWasAfterAFailure) {
    set("DEMO", "x");
    EXPECT_EQ(publish(), 0);
    const std::string before = readTestFile(place_.script);
    registry_.setForbidden(kKey);
    EXPECT_NE(publish(), 0);
    EXPECT_EQ(readTestFile(place_.script), before);
    MemoryRegistry other;
    other.addText(kMachine, kKey, "DEMO", "y");
    EXPECT_NE(publishEnvironment(other, {directory_.file("none/script"), ""}), 0);
    EXPECT_NE(publishEnvironment(other, {directory_.file("profile.d"), ""}), 0);
    EXPECT_TRUE(nothingElseIsLeft());
}

TEST_F(PublishedEnvironmentTest, HoldsOnlyTextsOfTheRegistry) {
    int created = 0;
    platform::SqliteRegistry registry(directory_.file("state"));
    ASSERT_EQ(registry.createKey(kMachine, kKey, kNative, created), 0);
    ASSERT_EQ(registry.writeValue(kMachine, kKey, kNative, "B", {platform::kRegDword, "abcd"}), 0);
    EXPECT_EQ(publishEnvironment(registry, place_), 0);
    EXPECT_FALSE(testFileExists(place_.script));
    ASSERT_EQ(registry.writeValue(kMachine, kKey, kNative, "A", {platform::kRegExpandString, "x"}), 0);
    EXPECT_EQ(publishEnvironment(registry, place_), 0);
    EXPECT_EQ(seen(readTestFile(place_.script), "A"), "x\n");
    EXPECT_EQ(seen(readTestFile(place_.script), "B"), "");
}

// In the state directory that all tests of this program share.
TEST_F(EnvironmentScriptTest, IsWhatABroadcastWrites) {
    const EnvironmentScriptPlace place = platform::environmentScriptPlace();
    ASSERT_EQ(place.link, "");
    ASSERT_EQ(place.script, *platform::systemEnvironment().get("TANDREL_STATE_DIR") + "/environment.sh");
    platform::Registry& registry = platform::systemRegistry();
    int created = 0;
    ASSERT_EQ(registry.createKey(kMachine, platform::kSystemEnvironmentKey, kNative, created), 0);
    ASSERT_EQ(registry.writeValue(kMachine, platform::kSystemEnvironmentKey, kNative, "DEMO",
                                  {platform::kRegString, "it's"}),
              0);
    EXPECT_TRUE(platform::systemShellObjects().broadcastEnvironment());
    EXPECT_EQ(seen(readTestFile(place.script), "DEMO"), "it's\n");
    ASSERT_EQ(registry.deleteValue(kMachine, platform::kSystemEnvironmentKey, kNative, "DEMO"), 0);
    EXPECT_TRUE(platform::systemShellObjects().broadcastEnvironment());
    EXPECT_FALSE(testFileExists(place.script));
}

}  // namespace
