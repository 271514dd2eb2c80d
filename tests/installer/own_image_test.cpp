#include "installer/own_image.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_platform.h"

namespace {

class OwnImageTest : public testing::Test {
protected:
    OwnImageTest() {
        machine_.files.addFile("/product/uninstall", "the program");
        machine_.files.addFile("/copy", "the program's copy");
        machine_.files.addDirectory("/tmp");
    }
    bool stepAside() {
        const platform::Platform bundle = machine_.bundle();
        return OwnImage(bundle.files, "/product/uninstall").stepAside("/copy");
    }

    MemoryPlatform machine_;
};

TEST_F(OwnImageTest, LeavesACopyInItsPlaceThatNothingHolds) {
    ASSERT_TRUE(stepAside());
    EXPECT_EQ(machine_.files.content("/product/uninstall"), "the program's copy");
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst-1/ormelformer.dll"), "the program");
    EXPECT_TRUE(machine_.files.isPrivate("/tmp/ormeluninst-1"));
}

TEST_F(OwnImageTest, StaysWhereItIsIfTheCopyCannotBeMade) {
    machine_.files.removeFile("/copy");
    EXPECT_FALSE(stepAside());
    EXPECT_EQ(machine_.files.content("/product/uninstall"), "the program");
    EXPECT_FALSE(machine_.files.hasDirectory("/tmp/ormeluninst-1"));
}

TEST_F(OwnImageTest, AFileThatIsNotThereCannotStepAside) {
    machine_.files.removeFile("/product/uninstall");
    EXPECT_FALSE(stepAside());
    EXPECT_FALSE(machine_.files.hasFile("/product/uninstall"));
}

}  // namespace
