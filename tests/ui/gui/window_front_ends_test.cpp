#include "ui/gui/window_front_ends.h"

#include <gtest/gtest.h>

#include "description/answers_file.h"
#include "fakes/recording_toolkit.h"
#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_file_system.h"
#include "ui/generic_ui.h"

namespace {

class WindowFrontEndsTest : public testing::Test {
protected:
    MemoryConsoleDevice terminal;
    MemoryFileSystem files;
    AnswersFile answers{files};
    RecordingToolkit window;
    int opened = 0;
};

TEST_F(WindowFrontEndsTest, SaysWhyThereIsNoWindow) {
    WindowFrontEnds frontEnds(terminal, files, [](std::string& outReason) -> Toolkit* {
        outReason = "no display is named";
        return nullptr;
    });
    std::string reason;
    EXPECT_FALSE(frontEnds.isAvailable(reason));
    EXPECT_EQ(reason, "no display is named");
}

TEST_F(WindowFrontEndsTest, LooksForTheToolkitWhenAWindowIsWantedAndOnlyOnce) {
    WindowFrontEnds frontEnds(terminal, files, [this](std::string&) {
        ++opened;
        return &window;
    });
    EXPECT_EQ(opened, 0);
    std::string reason;
    EXPECT_TRUE(frontEnds.isAvailable(reason));
    EXPECT_TRUE(frontEnds.isAvailable(reason));
    EXPECT_EQ(opened, 1);
    const auto ui = frontEnds.make(false, answers, {});
    ASSERT_NE(ui, nullptr);
    EXPECT_EQ(ui->isGraphical(), 1);
}

}  // namespace
