#include "wini/machine_fixture.h"

#include <algorithm>
#include <cstdlib>

#include "fakes/temporary_directory.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/processes.h"
#include "platform/program.h"
#include "support/utilities.h"

namespace {

constexpr const char* kStateDirectory = "TANDREL_STATE_DIR";
constexpr const char* kHasDirectory = "TANDREL_TEST_HAS_STATE_DIR";
constexpr const char* kStopMark = "TANDREL_TEST_STOP_MARK";

bool isSet(const char* name) {
    return !platform::systemEnvironment().get(name).value_or("").empty();
}

constexpr int kPatience = 1000;
constexpr std::uint32_t kPause = 10;  // milliseconds

// The processes that say that they are made of a file of this name.
long countOf(const std::string& image) {
    const std::string name = image.substr(image.find_last_of("/\\") + 1);
    std::vector<platform::ProcessInfo> processes;
    EXPECT_TRUE(platform::systemProcesses().list(processes));
    return std::count_if(processes.begin(), processes.end(),
                         [&](const platform::ProcessInfo& process) { return process.path.ends_with(name); });
}

class MachineEnvironment : public testing::Environment {
public:
    void SetUp() override {
        if (isSet(kStopMark)) {
            writeTestFile(*platform::systemEnvironment().get(kStopMark), "stopped");
            std::_Exit(0);
        }
        // Children keep to the directory of the one that started them.
        if (!isSet(kHasDirectory)) {
            directory_ = std::make_unique<TemporaryDirectory>();
            ASSERT_TRUE(platform::systemEnvironment().set(kHasDirectory, "1"));
            ASSERT_TRUE(platform::systemEnvironment().set(kStateDirectory, directory_->path().c_str()));
        }
    }
    void TearDown() override { directory_.reset(); }

private:
    std::unique_ptr<TemporaryDirectory> directory_;
};

[[maybe_unused]] const testing::Environment* const kMachineEnvironment =
    testing::AddGlobalTestEnvironment(new MachineEnvironment);

}  // namespace

// What children do; run only when a test asks for it.

TEST(WiniChild, DISABLED_Passes) {}

TEST(WiniChild, DISABLED_Fails) {
    std::_Exit(42);
}

TEST(WiniChild, DISABLED_Sleeps) {
    platform::sleepMilliseconds(60000);
}

TEST(WiniChild, DISABLED_LeavesAFileInItsDirectory) {
    writeTestFile("left behind", "x");
}

std::string MachineTest::ownImage() {
    std::string image;
    EXPECT_TRUE(platform::ownImagePath(image));
    return image;
}

std::string MachineTest::argumentsOf(const std::string& childTest) {
    return "--gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=\"WiniChild.DISABLED_" +
           childTest + "\"";
}

std::string MachineTest::commandOf(const std::string& childTest, const std::string& image) {
    return '"' + image + "\" " + argumentsOf(childTest);
}

std::unique_ptr<platform::ChildProcess> MachineTest::startChild(const std::string& childTest,
                                                                const std::string& image) {
    int error = 0;
    const long before = countOf(image);
    auto child = platform::systemProcesses().start(commandOf(childTest, image).c_str(), "", error);
    EXPECT_NE(child, nullptr) << error;
    // One that has just begun can't always say which file it is made of.
    for (int i = 0; i < kPatience && child != nullptr && countOf(image) <= before && !child->wait(kPause);
         ++i) {
    }
    return child;
}

void MachineTest::copyOwnImage(const std::string& to) {
    platform::FileSystem& files = platform::systemFileSystem();
    ASSERT_TRUE(OUtils::copyFile(ownImage().c_str(), to.c_str(), files));
    ASSERT_EQ(files.makeExecutable(to.c_str()), 0);
}

StoppingService::StoppingService(const std::string& markFile) {
    EXPECT_TRUE(platform::systemEnvironment().set(kStopMark, markFile.c_str()));
}

StoppingService::~StoppingService() {
    platform::systemEnvironment().set(kStopMark, "");
}
