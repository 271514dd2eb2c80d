#include "previewer/console_walk.h"

#include <gtest/gtest.h>

#include "previewer/small_product.h"

namespace {

using System = MemoryManner::System;

std::vector<ConsolePage> walk(const std::string& description, System system = System::kLinux) {
    std::vector<ConsolePage> pages;
    PreviewMachine machine(system, SmallProduct::product(description));
    const auto make = [&](const PreviewMachine::Surroundings& surroundings) {
        return std::make_unique<ConsoleWalk>(surroundings, machine.machine().console, pages);
    };
    machine.install(make);
    machine.uninstall(make);
    return pages;
}

std::string textOf(const std::vector<ConsolePage>& pages, const std::string& file) {
    for (const ConsolePage& page : pages) {
        if (page.file == file) {
            return page.text;
        }
    }
    return "no page";
}

TEST(ConsoleWalk, GivesEachPageWhatItPrints) {
    const std::vector<ConsolePage> pages = walk(SmallProduct::description());
    const std::string installation = textOf(pages, "install-03-CopyProgress");
    EXPECT_TRUE(textOf(pages, "install-01-Welcome").ends_with("Hello.\n"));
    EXPECT_EQ(textOf(pages, "install-02-Settings"), "Frame.\n");
    EXPECT_NE(installation.find("Create /product"), std::string::npos) << installation;
    EXPECT_NE(installation.find("install.xml\n"), std::string::npos) << installation;
    EXPECT_NE(textOf(pages, "uninstall-02-CopyProgress").find("install.xml\n"), std::string::npos);
}

TEST(ConsoleWalk, PressesEnterAtEachQuestion) {
    const std::vector<ConsolePage> pages =
        walk(SmallProduct::description("Hello.",
                                       "<Field Type='EditBox' Label='Name'>NAME</Field>"
                                       "<Field Type='Password' Label='Secret'>SECRET</Field>"
                                       "<Field Type='CheckBox' Label='Sure'>SURE</Field>"));
    const std::string text = textOf(pages, "install-02-Settings");
    EXPECT_NE(text.find("Name [nobody]:\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Secret"), std::string::npos) << text;
    EXPECT_NE(text.find("Sure"), std::string::npos) << text;
    EXPECT_NE(textOf(pages, "install-03-CopyProgress"), "no page");
}

TEST(ConsoleWalk, ShowsTheDefaultsOfTheSystem) {
    const std::string description =
        SmallProduct::description("Hello.", "<Field Type='EditBox' Label='Where'>PLACE</Field>");
    const std::string windows = textOf(walk(description, System::kWindows), "install-02-Settings");
    EXPECT_NE(windows.find("Where [C:\\Program Files/small]:\n"), std::string::npos) << windows;
    const std::string linux = textOf(walk(description, System::kLinux), "install-02-Settings");
    EXPECT_NE(linux.find("Where [/opt/small]:\n"), std::string::npos) << linux;
}

}  // namespace
