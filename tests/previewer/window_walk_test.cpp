#include "previewer/window_walk.h"

#include <gtest/gtest.h>

#include "fakes/recording_toolkit.h"
#include "previewer/small_product.h"

namespace {

class WindowWalkTest : public testing::Test {
protected:
    // A walk is over after so many moments in which nothing is left to do.
    static constexpr int kMostIdles = 500;

    void walk(const std::string& description) {
        window.script = [this] {
            for (int i = 0; i < kMostIdles && !window.isClosed; ++i) {
                window.events->onIdle();
            }
            EXPECT_TRUE(window.isClosed);
        };
        WatchedToolkit watched(window);
        PreviewMachine machine(MemoryManner::System::kLinux, SmallProduct::product(description));
        const auto make = [&](const PreviewMachine::Surroundings& surroundings) {
            return std::make_unique<WindowWalk>(
                surroundings, watched, record,
                [this](const std::string& file, const Image& picture) { pictures[file] = picture; });
        };
        ends = {machine.install(make), machine.uninstall(make)};
    }
    std::vector<std::string> shownPages() const {
        std::vector<std::string> files;
        for (const PageRecord& page : record.pages) {
            files.push_back(page.file);
        }
        return files;
    }

    RecordingToolkit window;
    WalkRecord record;
    std::map<std::string, Image> pictures;
    std::vector<std::string> ends;
};

TEST_F(WindowWalkTest, ShowsAllPagesOfInstallationAndUninstallation) {
    walk(SmallProduct::description());
    EXPECT_EQ(shownPages(),
              (std::vector<std::string>{"install-01-Welcome", "install-02-Settings",
                                        "install-03-CopyProgress", "install-04-End", "uninstall-01-Bye",
                                        "uninstall-02-CopyProgress", "uninstall-03-End"}));
    EXPECT_EQ(ends, (std::vector<std::string>{"", ""}));
    EXPECT_TRUE(record.ends.empty());
    EXPECT_EQ(pictures.size(), 7U);
    EXPECT_EQ(pictures["install-01-Welcome"].width(), record.pages[0].size.width);
}

TEST_F(WindowWalkTest, FindsATextThatIsCut) {
    walk(SmallProduct::description(std::string(100, 'W')));
    ASSERT_FALSE(record.pages.empty());
    ASSERT_EQ(record.pages[0].faults.size(), 1U);
    EXPECT_EQ(record.pages[0].faults[0].kind, LayoutFault::Kind::kCut);
    EXPECT_TRUE(record.pages[1].faults.empty());
}

TEST_F(WindowWalkTest, SaysThatAPageCantBeDrawn) {
    window.canDraw = false;
    walk(SmallProduct::description());
    ASSERT_FALSE(record.pages.empty());
    EXPECT_EQ(record.pages[0].notes, std::vector<std::string>{"the page can't be drawn"});
    EXPECT_TRUE(pictures.empty());
}

}  // namespace
