#include "rehearsal/product_run.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "rehearsal/rehearsed_machine.h"
#include "rehearsal/small_product.h"

namespace {

class ProductRunTest : public testing::Test {
protected:
    ProductRunTest()
        : description_(readMachine("[machine]\nsystem = linux\n")),
          machine_(description_, [](const auto&) { return ""; }) {}

    RunResult install(const std::string& text) {
        machine_.files.addProgram("/setup/setup", SmallProduct::product(text).package);
        return runProduct(machine_, {"/setup/setup", 0, false, "", {}});
    }

    MachineDescription description_;
    RehearsedMachine machine_;
};

TEST_F(ProductRunTest, GivesWhatASessionKnows) {
    const RunResult result = install(SmallProduct::description());
    EXPECT_TRUE(result.hasSucceeded);
    EXPECT_EQ(result.failure, "");
    EXPECT_TRUE(result.errors.empty());
    EXPECT_EQ(result.productLog, "/opt/small/u/install.log");
    EXPECT_TRUE(std::ranges::is_sorted(result.variables));
    EXPECT_FALSE(result.log.empty());
    EXPECT_EQ(machine_.files.openFileCount(), 0);
}

TEST_F(ProductRunTest, UninstallsByALog) {
    const RunResult installed = install(SmallProduct::description());
    machine_.files.addFile("/tmp/log", machine_.files.content(installed.productLog));
    const RunResult result = runProduct(machine_, {"/tmp/log", 0, true, "", {}});
    EXPECT_TRUE(result.hasSucceeded) << result.failure;
    EXPECT_FALSE(machine_.files.exists("/opt/small"));
}

// A real run would wait for minutes for a second program of an uninstaller whose entry stays.
TEST_F(ProductRunTest, DoesNotWaitForOtherUninstallers) {
    const std::string list = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
    const auto root = platform::RegistryRoot::kLocalMachine;
    for (const char* const name : {"Other", "Stubborn"}) {
        machine_.registry.addText(root, list + name, "DisplayName", name);
        machine_.registry.addText(root, list + name, "UninstallString", std::string("remove-") + name);
    }
    machine_.registry.addKey(root, list + "Stubborn\\below");
    const auto page = [](const std::string& name) {
        return "<ExternalUninstall Special=\"AutoNext\"><ExternalLegacyApplication>" + name +
               "</ExternalLegacyApplication></ExternalUninstall>";
    };
    const RunResult stubborn = install(SmallProduct::description("", page("Stubborn")));
    EXPECT_EQ(stubborn.failure, "the page \"ExternalUninstall\" holds the run");
    const RunResult other = install(SmallProduct::description("", page("Other")));
    EXPECT_TRUE(other.hasSucceeded) << other.failure;
    EXPECT_EQ(machine_.actions,
              (std::vector<std::string>{"run remove-Stubborn -> 0", "run remove-Other -> 0"}));
}

}  // namespace
