#include "rehearsal/rehearsed_machine.h"

#include <gtest/gtest.h>

#include "platform/system_environment.h"
#include "rehearsal/fault_text.h"

namespace {

std::string nothingBeside(const MachineDescription::Named& copy) {
    return "content of " + copy.text;
}

TEST(RehearsedMachineTest, HasWhatItsFileSays) {
    const MachineDescription description = readMachine(
        "[machine]\nsystem = linux\n[directories]\n/d\n[files]\n/f = x\n[programs]\n/p = y\n[copies]\n/c = "
        "c.txt\n"
        "[links]\n/l = /f\n[read-only]\n/r\n[free space]\n/small = 5\n[registry]\nHKCU\\k : n = dword 1\n"
        "[environment]\nA = %B%\n[process environment]\nHOME = /h\n[running]\n/p\n");
    RehearsedMachine machine(description, nothingBeside);
    EXPECT_TRUE(machine.files.operations().empty());
    EXPECT_TRUE(machine.registry.operations.empty());
    EXPECT_TRUE(machine.files.hasDirectory("/d"));
    EXPECT_EQ(machine.files.content("/f"), "x");
    EXPECT_TRUE(machine.files.isExecutable("/p"));
    EXPECT_EQ(machine.files.content("/c"), "content of c.txt");
    EXPECT_EQ(machine.files.linkTarget("/l"), "/f");
    EXPECT_NE(machine.files.createDirectory("/r/x"), 0);
    platform::Volume volume;
    EXPECT_EQ(machine.files.findVolume("/small/x", volume), 0);
    EXPECT_EQ(volume.free, 5);
    EXPECT_NE(machine.registry.value(platform::RegistryRoot::kCurrentUser, "k", "n"), nullptr);
    const platform::RegistryValue* const variable =
        machine.registry.value(platform::RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "A");
    ASSERT_NE(variable, nullptr);
    EXPECT_EQ(variable->type, platform::kRegExpandString);
    EXPECT_EQ(machine.environment.get("HOME"), "/h");
    EXPECT_EQ(machine.processes.running.size(), 1U);
}

TEST(RehearsedMachineTest, HasTheFactsOfItsSystem) {
    const MachineDescription linuxFile = readMachine("[machine]\nsystem = linux\n");
    const MachineDescription windowsFile = readMachine("[machine]\nsystem = windows\n");
    RehearsedMachine linuxMachine(linuxFile, nothingBeside);
    RehearsedMachine windowsMachine(windowsFile, nothingBeside);
    EXPECT_FALSE(linuxMachine.environment.get("SystemRoot"));
    EXPECT_EQ(windowsMachine.environment.get("SystemRoot"), "C:\\Windows");
    EXPECT_FALSE(linuxMachine.files.isOrdinaryDirectory("/opt"));
    EXPECT_TRUE(windowsMachine.files.hasDirectory("C:\\Program Files"));
    EXPECT_FALSE(windowsMachine.files.hasDirectory("/tmp"));
    std::string state;
    EXPECT_TRUE(windowsMachine.environment.stateDirectory(state));
    EXPECT_EQ(state, "C:\\ProgramData\\Tandrel");
    std::unique_ptr<platform::FirewallProfile> profile;
    EXPECT_FALSE(linuxMachine.firewall.connect(profile).done());
    EXPECT_TRUE(windowsMachine.firewall.connect(profile).done());
}

TEST(RehearsedMachineTest, RefusesTwoThingsInOnePlace) {
    for (const char* lines :
         {"[files]\n/opt = x\n", "[files]\n/a = x\n/a/b = y\n", "[files]\n/a/b = x\n/a = y\n",
          "[files]\n/a = x\n[directories]\n/A\n", "[links]\n/a = b\n[programs]\n/a/c = x\n",
          "[files]\n/a/../b = x\n[links]\n/b = y\n", "[files]\nC:\\ = x\n"}) {
        const MachineDescription description =
            readMachine(std::string("[machine]\nsystem = linux\n") + lines);
        EXPECT_NE(faultOf([&] { RehearsedMachine(description, nothingBeside); }), "") << lines;
    }
}

TEST(RehearsedMachineTest, CountsTemporaryNamesFromOne) {
    const MachineDescription description = readMachine("[machine]\nsystem = linux\n");
    RehearsedMachine machine(description, nothingBeside);
    std::string first;
    std::string second;
    EXPECT_TRUE(machine.files.temporaryName("x", 77, first));
    EXPECT_TRUE(machine.files.temporaryName("x", 77, second));
    EXPECT_EQ(first, "/tmp/x1.tmp");
    EXPECT_EQ(second, "/tmp/x2.tmp");
}

}  // namespace
