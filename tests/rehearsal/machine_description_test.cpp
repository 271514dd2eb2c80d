#include "rehearsal/machine_description.h"

#include <gtest/gtest.h>

#include "rehearsal/fault_text.h"

namespace {

const std::string kWhole =
    "# a machine\n[machine]\nsystem = windows\nsetup = D:\\x\\setup.exe\ntemporary directory = C:\\T\n"
    "[steps]\ninstall \"-VARIABLE_A=b c\" -backup=0\nuninstall\n"
    "[directories]\nC:\\d\n[files]\nC:\\f = \"a\\nb\"\n[programs]\n/p = x\n[copies]\n/c = c.txt\n"
    "[links]\n/l = /p\n[read-only]\n/r\n[free space]\nC:\\ = 100\n[registry]\nHKLM\\k : n = string v\n"
    "[registry 32]\nHKLM\\k\n[environment]\nE = v\n[process environment]\nP = \"\"\n[running]\nC:\\run.exe\n"
    "[results]\nr*.exe = 3\nq.exe = cannot start\n";

std::string faultIn(const std::string& lines) {
    return faultOf([&] { readMachine("[machine]\nsystem = linux\n" + lines); });
}

TEST(MachineDescriptionTest, HasAPlaceForItsSetupInAPlainMachine) {
    const MachineDescription machine = plainMachine(MemoryManner::System::kWindows);
    EXPECT_TRUE(machine.isWindows());
    EXPECT_EQ(machine.setup, "C:\\Setup\\setup.exe");
    EXPECT_EQ(machine.besideSetup("answers.xml"), "C:\\Setup\\answers.xml");
    EXPECT_EQ(machine.temporaryDirectory, "C:\\Windows\\Temp");
    EXPECT_EQ(machine.steps.size(), 1U);
}

TEST(MachineDescriptionTest, HasAllThatItsSectionsSay) {
    const MachineDescription machine = readMachine(kWhole);
    EXPECT_TRUE(machine.isWindows());
    EXPECT_EQ(machine.setup, "D:\\x\\setup.exe");
    EXPECT_EQ(machine.temporaryDirectory, "C:\\T");
    ASSERT_EQ(machine.steps.size(), 2U);
    EXPECT_EQ(machine.steps[0].options, (std::vector<std::string>{"-VARIABLE_A=b c", "-backup=0"}));
    EXPECT_FALSE(machine.steps[1].isInstallation);
    EXPECT_EQ(machine.directories, std::vector<std::string>{"C:\\d"});
    EXPECT_EQ(machine.files.at(0).text, "a\nb");
    EXPECT_EQ(machine.programs.at(0).name, "/p");
    EXPECT_EQ(machine.copies.at(0).text, "c.txt");
    EXPECT_EQ(machine.copies.at(0).line, 16);
    EXPECT_EQ(machine.links.at(0).text, "/p");
    EXPECT_EQ(machine.readOnly.at(0), "/r");
    EXPECT_EQ(machine.freeSpace.at(0).bytes, 100);
    ASSERT_EQ(machine.registry.size(), 2U);
    EXPECT_EQ(machine.registry[0].value.data, "v");
    EXPECT_EQ(machine.registry[1].view, platform::RegistryView::k32Bit);
    EXPECT_EQ(machine.environment.at(0).text, "v");
    EXPECT_EQ(machine.processEnvironment.at(0).text, "");
    EXPECT_EQ(machine.running.at(0), "C:\\run.exe");
    EXPECT_EQ(machine.results.at(0).exitCode, 3);
    EXPECT_FALSE(machine.results.at(1).exitCode);
}

TEST(MachineDescriptionTest, InstallsOnceWhereNothingElseIsSaid) {
    const MachineDescription machine = readMachine("[machine]\nsystem = linux\n");
    ASSERT_EQ(machine.steps.size(), 1U);
    EXPECT_TRUE(machine.steps[0].isInstallation);
    EXPECT_EQ(machine.setup, "/setup/setup");
    EXPECT_EQ(machine.temporaryDirectory, "/tmp");
}

TEST(MachineDescriptionTest, CanInstallFromAnotherPackage) {
    const MachineDescription machine = readMachine(
        "[machine]\nsystem = linux\n[steps]\ninstall from \"a b\" -backup=0\ninstall -VARIABLE_X from\n");
    EXPECT_EQ(machine.steps.at(0).package, "a b");
    EXPECT_EQ(machine.steps.at(0).options, std::vector<std::string>{"-backup=0"});
    EXPECT_EQ(machine.steps.at(1).package, "");
    EXPECT_EQ(machine.steps.at(1).options, (std::vector<std::string>{"-VARIABLE_X", "from"}));
}

TEST(MachineDescriptionTest, NeedsASystem) {
    for (const char* text : {"", "[machine]\n", "[machine]\nsetup = /x\n", "[files]\n/a = b\n"}) {
        EXPECT_EQ(faultOf([&] { readMachine(text); }),
                  "line 1: the section [machine] with system = linux or system = windows is missing");
    }
}

TEST(MachineDescriptionTest, NamesTheLineThatIsWrong) {
    EXPECT_EQ(faultIn("[fils]"), "line 3: a machine has no section [fils]");
    EXPECT_EQ(faultIn("[files]\nx = y"), "line 4: \"x\" is no full path, such as /opt/x or C:\\x");
    EXPECT_EQ(faultIn("[files]\n/x"), "line 4: \" = \" and a value are missing; an empty value is \"\"");
    EXPECT_EQ(faultIn("[files]\n/x = 1\n\\X = 2"), "line 5: \"\\X\" is there already");
    EXPECT_EQ(faultIn("[steps]\nuninstall"), "line 4: nothing is installed yet");
    EXPECT_EQ(faultIn("color = red"), "line 3: the section [machine] has no entry \"color\"");
    for (const char* lines : {"[steps]\nremove", "[steps]\nuninstall x", "[free space]\n/ = -1",
                              "[free space]\n/ = 1x", "[results]\nx = y", "[results]\nx = 99999999999",
                              "[running]\nx", "[links]\na = b", "system = linux"}) {
        EXPECT_TRUE(faultIn(lines).starts_with("line ")) << lines;
    }
    EXPECT_NE(faultOf([] { readMachine("[machine]\nsystem = plan9\n"); }), "");
    std::string steps = "[steps]\n";
    for (int i = 0; i < 21; ++i) {
        steps += "install\n";
    }
    EXPECT_EQ(faultIn(steps), "line 24: there are too many steps");
}

TEST(MachineDescriptionTest, LimitsWhatCouldTakeLong) {
    const std::string path = "/" + std::string(4096, 'a');
    EXPECT_EQ(faultIn("[directories]\n" + path.substr(0, 4096)), "");
    EXPECT_EQ(faultIn("[directories]\n" + path), "line 4: this path is too long");
    EXPECT_EQ(faultIn("[registry]\nHKLM\\" + path), "line 4: this key is too long");
    std::string lines;
    for (int i = 0; i < 1001; ++i) {
        lines += "/" + std::to_string(i) + " = 1\n";
    }
    EXPECT_EQ(faultIn("[files]\n" + lines), "");
    for (const char* section : {"[read-only]\n", "[running]\n", "[free space]\n", "[results]\n"}) {
        EXPECT_NE(faultIn(section + lines).find(" has more than 1000 lines"), std::string::npos) << section;
    }
}

TEST(MachineDescriptionTest, IsReadOrRefusedWhereverItIsCut) {
    int refused = 0;
    for (std::size_t size = 0; size < kWhole.size(); ++size) {
        const std::string fault = faultOf([&] { readMachine(kWhole.substr(0, size)); });
        EXPECT_TRUE(fault.empty() || fault.starts_with("line ")) << fault;
        refused += fault.empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 50);
}

TEST(MachineDescriptionTest, SurvivesADamageOfEachByte) {
    int refused = 0;
    for (std::size_t at = 0; at < kWhole.size(); ++at) {
        for (const char byte : {'\0', '"', '=', '[', '\n', '\\', '\xFF'}) {
            std::string text = kWhole;
            text[at] = byte;
            const std::string fault = faultOf([&] { readMachine(text); });
            EXPECT_TRUE(fault.empty() || fault.starts_with("line ")) << fault;
            refused += fault.empty() ? 0 : 1;
        }
    }
    EXPECT_GT(refused, 500);
}

}  // namespace
