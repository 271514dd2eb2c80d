#include "rehearsal/second_stage.h"

#include <gtest/gtest.h>

namespace {

TEST(SecondStageTest, WorksOnACopyOfTheLogAndAsACopyOfTheProgram) {
    const MachineDescription description = plainMachine(MemoryManner::System::kLinux);
    RehearsedMachine machine(description, [](const auto&) { return ""; });
    machine.files.addFile("/opt/x/install.log", "records");
    {
        const SecondStage stage(machine, "/opt/x/install.log");
        EXPECT_EQ(stage.logCopy(), "/tmp/ormeluninst.log");
        EXPECT_EQ(machine.files.content(stage.logCopy()), "records");
        EXPECT_EQ(machine.environment.program, "/tmp/ormeluninst.dll");
    }
    EXPECT_FALSE(machine.files.hasFile("/tmp/ormeluninst.log"));
    EXPECT_TRUE(machine.files.hasFile("/opt/x/install.log"));
}

}  // namespace
