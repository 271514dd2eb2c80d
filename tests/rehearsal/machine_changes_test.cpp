#include "rehearsal/machine_changes.h"

#include <gtest/gtest.h>

#include "platform/system_environment.h"
#include "rehearsal/rehearsed_machine.h"

namespace {

using Lines = std::vector<std::string>;
using platform::RegistryRoot;

class MachineChangesTest : public testing::Test {
protected:
    void makeMachine(const std::string& lines) {
        description_ = readMachine("[machine]\nsystem = " + lines);
        machine_ = std::make_unique<RehearsedMachine>(description_, [](const auto&) { return ""; });
        start_ = takeSnapshot(*machine_);
    }
    MachineChanges changes() { return changesBetween(start_, takeSnapshot(*machine_), *machine_); }

    MachineDescription description_;
    std::unique_ptr<RehearsedMachine> machine_;
    MachineSnapshot start_;
};

TEST_F(MachineChangesTest, AreNoneAtFirst) {
    makeMachine("windows\n[files]\n/a = b\n");
    const MachineChanges none = changes();
    for (const Lines* lines :
         {&none.files, &none.registry, &none.environment, &none.shortcuts, &none.firewall}) {
        EXPECT_EQ(*lines, Lines());
    }
}

TEST_F(MachineChangesTest, NameFilesInOrderWithoutRegardToCase) {
    makeMachine("linux\n[files]\n/opt/gone = x\n/opt/other = x\n");
    machine_->files.removeFile("/opt/gone");
    machine_->files.addFile("/opt/other", "y\n");
    machine_->files.addFile("/opt/B", std::string(121, 'b'));
    machine_->files.addProgram("/opt/a", "");
    machine_->files.addFile("/opt/p", "secret");
    machine_->files.makePrivate("/opt/p");
    machine_->files.addLink("/opt/l", "/opt/a");
    machine_->files.addDirectory("/opt/x = y");
    EXPECT_EQ(changes().files,
              (Lines{"/opt/a = program \"\"", "/opt/B = 121 bytes, MD5 ed83d062abf86f63bb91f7c5ae8bf66a",
                     "/opt/gone = removed", "/opt/l = link to /opt/a", "/opt/other = \"y\\n\"",
                     "/opt/p = private \"secret\"", "\"/opt/x = y\" = directory"}));
}

TEST_F(MachineChangesTest, ShowPathsAsTheSystemWritesThem) {
    makeMachine("windows\n");
    machine_->files.addProgram("C:/x/run.exe", "MZ");
    EXPECT_EQ(changes().files, (Lines{"C:\\x = directory", "C:\\x\\run.exe = \"MZ\""}));
}

TEST_F(MachineChangesTest, KeepShortcutsApartFromFiles) {
    makeMachine("linux\n");
    machine_->desktop.createUrlLink("/opt/u", "https://x");
    EXPECT_EQ(changes().files, Lines());
    EXPECT_EQ(changes().shortcuts, Lines{"/opt/u = address \"https://x\""});
}

TEST_F(MachineChangesTest, KeepTheEnvironmentApartFromTheRegistry) {
    makeMachine("windows\n[environment]\nA = 1\n[registry]\nHKCU\\k : n = string v\n");
    machine_->registry.addText(RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "A", "2");
    machine_->registry.deleteValue(RegistryRoot::kCurrentUser, "k", platform::RegistryView::kNative, "n");
    machine_->registry.addText(RegistryRoot::kLocalMachine, "x\\y", "", "d", platform::RegistryView::k32Bit);
    EXPECT_EQ(changes().environment, Lines{"A = string 2"});
    EXPECT_EQ(changes().registry,
              (Lines{"HKCU\\k : n = removed", "HKLM\\x (32-bit) = key", "HKLM\\x\\y (32-bit) = key",
                     "HKLM\\x\\y (32-bit) : \"\" = string d"}));
}

TEST_F(MachineChangesTest, NameExceptionsOfTheFirewall) {
    makeMachine("windows\n");
    machine_->firewall.ports[{80, platform::FirewallProtocol::kTcp}] = "Web";
    machine_->firewall.applications["C:\\x.exe"] = "X";
    EXPECT_EQ(changes().firewall, (Lines{"application C:\\x.exe = \"X\"", "port 80 TCP = \"Web\""}));
}

}  // namespace
