#include "wini/process_environment.h"

#include <gtest/gtest.h>

#include "fakes/fake_environment.h"
#include "fakes/memory_file_system.h"

namespace {

class ProcessEnvironmentTest : public testing::Test {
protected:
    FakeEnvironment variables_;
    MemoryFileSystem files_;
    ProcessEnvironment environment_{variables_, files_};
};

TEST_F(ProcessEnvironmentTest, readsAndSetsVariables) {
    variables_.variables["A"] = "value";
    variables_.refused = {"NO"};
    std::string value = "old";
    EXPECT_TRUE(environment_.getEnvironment("A", value));
    EXPECT_EQ(value, "value");
    EXPECT_FALSE(environment_.getEnvironment("B", value));
    EXPECT_TRUE(environment_.setEnvironment("B", "2"));
    EXPECT_EQ(variables_.variables["B"], "2");
    EXPECT_FALSE(environment_.setEnvironment("NO", "2"));
}

TEST_F(ProcessEnvironmentTest, knowsFilesAndDirectories) {
    files_.addFile("/a", "x");
    files_.setTemporaryDirectory("/some/tmp");
    EXPECT_TRUE(environment_.fileExists("/a"));
    EXPECT_FALSE(environment_.fileExists("/b"));
    std::string path;
    EXPECT_TRUE(environment_.getTempDirectory(path));
    EXPECT_EQ(path, "/some/tmp");
    EXPECT_TRUE(environment_.getProgramPath(path));
    EXPECT_NE(path.find("wini_test"), std::string::npos);
}

}  // namespace
