#include "previewer/preview_machine.h"

#include <gtest/gtest.h>

#include "previewer/small_product.h"
#include "ui/console/console_ui.h"

namespace {

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
};

TEST_F(PreviewMachineTest, InstallsAndUninstallsInMemory) {
    PreviewMachine machine(SmallProduct::payload(SmallProduct::description()), "");
    machine.machine().files.addDirectory("/product");
    EXPECT_EQ(machine.install(makeConsole), "");
    EXPECT_TRUE(machine.machine().files.hasFile("/product/install.xml"));
    EXPECT_EQ(machine.uninstall(makeConsole), "");
    EXPECT_FALSE(machine.machine().files.hasFile("/product/install.xml"));
}

TEST_F(PreviewMachineTest, SaysWhyThereIsNoWalk) {
    PreviewMachine machine("no package", "");
    EXPECT_NE(machine.install(makeConsole), "");
    EXPECT_EQ(machine.uninstall(makeConsole), "nothing was installed, so there is nothing to uninstall");
}

TEST_F(PreviewMachineTest, TakesAnswers) {
    const std::string description = SmallProduct::description(
        "Hello.", "<Text x='10' y='10' Condition=\"'[NAME]'=='me'\">It is me.</Text>");
    const std::string answers =
        "<R><DefValues><Value Name='NAME' DataType='value'>me</Value></DefValues></R>";
    for (const bool answered : {false, true}) {
        PreviewMachine machine(SmallProduct::payload(description), answered ? answers : "");
        machine.install([](const PreviewMachine::Surroundings& surroundings) -> std::unique_ptr<GenericUI> {
            auto console = std::make_unique<ConsoleUI>(false, false, false, surroundings.machine.console,
                                                       surroundings.answers, surroundings.log);
            bool isAutomated = false;
            console->createInputProvider("autoInstall", isAutomated);
            return console;
        });
        EXPECT_EQ(machine.machine().console.output.find("It is me.") != std::string::npos, answered);
    }
}

}  // namespace
