#include "previewer/index_page.h"

#include <gtest/gtest.h>

namespace {

bool has(const std::string& page, const std::string& text) {
    return page.find(text) != std::string::npos;
}

Preview preview() {
    Preview made;
    made.title = "Preview of <x>";
    AnswerSet set;
    set.name = "Default answers";
    set.console = {{"install-01-A", "Name & \"more\" \x1b[1m"}};
    WalkRecord record{
        {{"install-01-A", {200, 100}, {{LayoutFault::Kind::kCut, {20, 25, 100, 50}, "<b>"}}, {"a note"}}},
        {"it ended"}};
    set.windows = {{150, "default-150", record}};
    made.sets = {set};
    return made;
}

TEST(IndexPage, ShowsEachPageWithItsPictureAndItsText) {
    const std::string page = indexPageOf(preview());
    EXPECT_TRUE(has(page, "<img src=\"default-150/install-01-A.png\""));
    EXPECT_TRUE(has(page, "letters of 150 %"));
    EXPECT_TRUE(has(page, "a note"));
    EXPECT_TRUE(has(page, "it ended"));
}

TEST(IndexPage, EscapesAllTexts) {
    const std::string page = indexPageOf(preview());
    EXPECT_TRUE(has(page, "Preview of &lt;x&gt;"));
    EXPECT_TRUE(has(page, "Name &amp; &quot;more&quot;  [1m"));
    EXPECT_FALSE(has(page, "<b>"));
    EXPECT_FALSE(has(page, "<script"));
}

TEST(IndexPage, FramesAndCountsFaults) {
    EXPECT_EQ(countFaults(preview()), 1);
    const std::string page = indexPageOf(preview());
    EXPECT_TRUE(has(page, "1 fault:"));
    EXPECT_TRUE(has(page, "left:10.000000%;top:25.000000%;width:50.000000%;height:50.000000%"));
    EXPECT_TRUE(has(page, "cut: &lt;b&gt;"));
}

TEST(IndexPage, SaysWhyThereAreNoPictures) {
    Preview made = preview();
    made.windowNote = "no server";
    EXPECT_TRUE(has(indexPageOf(made), "No pictures: no server"));
}

TEST(IndexPage, ShowsWhatHasChanged) {
    Preview made = preview();
    made.comparedTo = "/earlier";
    EXPECT_TRUE(has(indexPageOf(made), "Nothing has changed."));
    made.changes = {{ChangedFile::Kind::kNew, "d/install-01-A.png", "", 0},
                    {ChangedFile::Kind::kGone, "d/install-02-B.png", "d/install-02-B.png", 0},
                    {ChangedFile::Kind::kChanged, "d/install-03-C.png", "d/install-03-C.png", 12},
                    {ChangedFile::Kind::kChanged, "d/install-03-C.txt", "d/install-03-C.txt", 0}};
    const std::string page = indexPageOf(made);
    EXPECT_TRUE(has(page, "d/install-01-A.png is new"));
    EXPECT_TRUE(has(page, "d/install-02-B.png is gone"));
    EXPECT_TRUE(has(page, "d/install-03-C.png has changed (12 pixels)"));
    EXPECT_TRUE(has(page, "compared/earlier-2.png"));
    EXPECT_TRUE(has(page, "compared/difference-2.png"));
    EXPECT_TRUE(has(page, "d/install-03-C.txt has changed"));
}

}  // namespace
