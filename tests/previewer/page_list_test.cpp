#include "previewer/page_list.h"

#include <gtest/gtest.h>

#include "description/dialog_model.h"
#include "ui/gui/page_fixture.h"

namespace {

TEST(PageList, NumbersPagesInTheOrderOfTheDescription) {
    PageEngine engine;
    engine.addDialog("Welcome");
    engine.addDialog("Finish");
    const PageList pages(engine, "install");
    EXPECT_EQ(pages.fileNameOf({0, -1}), "install-01-Welcome");
    EXPECT_EQ(pages.fileNameOf({1, -1}), "install-02-Finish");
    EXPECT_EQ(pages.fileNameOf({2, -1}), "");
    EXPECT_EQ(pages.pageAt({1, -1}), (PagePosition{1, -1}));
}

TEST(PageList, MakesNamesFitForFiles) {
    EXPECT_EQ(fileNamePart("Copy-Progress_2"), "Copy-Progress_2");
    EXPECT_EQ(fileNamePart("../a b\\c:\xC3\xA9"), "___a_b_c___");
    EXPECT_EQ(fileNamePart(std::string(500, 'x')), std::string(40, 'x'));
}

}  // namespace
