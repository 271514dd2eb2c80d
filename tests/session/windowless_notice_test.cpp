#include "session/windowless_notice.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/recording_ui.h"

namespace {

using Calls = std::vector<std::string>;

TEST(WindowlessNotice, ShowsItsLinesInOneBoxAndForgetsThem) {
    RecordingUI ui;
    WindowlessNotice notice;
    notice.add("one");
    notice.add("two");
    notice.show(ui);
    EXPECT_EQ(ui.take(), (Calls{"setFatalMessage(\"one\ntwo\", \"Installation\")", "showFatalMessage()"}));
    notice.show(ui);
    EXPECT_EQ(ui.take(), Calls{});
}

TEST(WindowlessNotice, ShowsNoMoreThanFitsOnAScreen) {
    RecordingUI ui;
    WindowlessNotice notice;
    for (int i = 0; i < WindowlessNotice::kMostLines + 5; ++i) {
        notice.add("line");
    }
    notice.show(ui);
    const std::string call = ui.calls.at(0);
    EXPECT_EQ(std::count(call.begin(), call.end(), '\n'), WindowlessNotice::kMostLines);
    EXPECT_NE(call.find("line\n...\""), std::string::npos);
}

TEST(WindowlessNotice, KeepsNothingOfWhatWasCleared) {
    RecordingUI ui;
    WindowlessNotice notice;
    notice.add("old");
    notice.clear();
    notice.add("new");
    notice.show(ui);
    EXPECT_EQ(ui.calls.at(0), "setFatalMessage(\"new\", \"Installation\")");
}

}  // namespace
