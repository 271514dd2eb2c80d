#include "previewer/preview_machine.h"

#include <gtest/gtest.h>

#include "previewer/small_product.h"
#include "ui/console/console_ui.h"

namespace {

using System = MemoryManner::System;

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

class PreviewMachineTest : public testing::Test {
protected:
    // A front end that asks nobody.
    static std::unique_ptr<GenericUI> makeConsole(const PreviewMachine::Surroundings& surroundings) {
        auto console =
            std::make_unique<ConsoleUI>(surroundings.isUninstallation, false, true,
                                        surroundings.machine.console, surroundings.answers, surroundings.log);
        bool isAutomated = false;
        console->createInputProvider(surroundings.isUninstallation ? "autoUninstall" : "autoInstall",
                                     isAutomated);
        return console;
    }

    // What an installation prints.
    static std::string outputOf(System system, const RehearsedProduct& product) {
        PreviewMachine machine(system, product);
        machine.install([](const PreviewMachine::Surroundings& surroundings) -> std::unique_ptr<GenericUI> {
            auto console = std::make_unique<ConsoleUI>(false, false, false, surroundings.machine.console,
                                                       surroundings.answers, surroundings.log);
            bool isAutomated = false;
            console->createInputProvider("autoInstall", isAutomated);
            return console;
        });
        return machine.machine().console.takeText();
    }
};

TEST_F(PreviewMachineTest, InstallsAndUninstallsInMemory) {
    PreviewMachine machine(System::kLinux, SmallProduct::product(SmallProduct::description()));
    EXPECT_EQ(machine.install(makeConsole), "");
    EXPECT_TRUE(machine.machine().files.hasFile("/product/install.xml"));
    EXPECT_EQ(machine.uninstall(makeConsole), "");
    EXPECT_FALSE(machine.machine().files.hasFile("/product/install.xml"));
}

TEST_F(PreviewMachineTest, SaysWhyThereIsNoWalk) {
    PreviewMachine machine(System::kLinux, {"no package", 0, std::nullopt});
    EXPECT_NE(machine.install(makeConsole), "");
    EXPECT_EQ(machine.uninstall(makeConsole), "nothing was installed, so there is nothing to uninstall");
}

TEST_F(PreviewMachineTest, TakesAnswers) {
    RehearsedProduct product = SmallProduct::product(SmallProduct::description(
        "Hello.", "<Text x='10' y='10' Condition=\"'[NAME]'=='me'\">It is me.</Text>"));
    EXPECT_FALSE(has(outputOf(System::kLinux, product), "It is me."));
    product.answers = "<R><DefValues><Value Name='NAME' DataType='value'>me</Value></DefValues></R>";
    EXPECT_TRUE(has(outputOf(System::kLinux, product), "It is me."));
}

TEST_F(PreviewMachineTest, HasPathsAndVariablesOfThePackagesSystem) {
    const RehearsedProduct product =
        SmallProduct::product(SmallProduct::description("Hello.", "", "[PROGRAMS]/small"));
    const std::string windows = outputOf(System::kWindows, product);
    EXPECT_TRUE(has(windows, "Create C:\\Program Files/small\\install.xml\n")) << windows;
    const std::string linux = outputOf(System::kLinux, product);
    EXPECT_TRUE(has(linux, "Create /opt/small/install.xml\n")) << linux;
}

TEST_F(PreviewMachineTest, CountsProgramsAsSuccessful) {
    PreviewMachine machine(System::kLinux, SmallProduct::product(SmallProduct::description()));
    int error = -1;
    const auto child = machine.machine().processes.start("/nowhere/program", "", error);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->exitCode(), 0);
}

}  // namespace
