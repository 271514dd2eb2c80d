#include "description/dialog_words.h"

#include <gtest/gtest.h>

#include "description/dialog_model.h"

namespace {

using namespace DialogWords;

TEST(DialogWords, KnowsEachKindOfElement) {
    const std::string_view words[] = {"Text",   "Image",  "HLine",     "RichEditText", "Progress",     "List",
                                      "TaskLB", "Border", "SlideShow", "HtmlEditText", "PlainEditText"};
    std::int32_t expected = 10;
    for (const std::string_view word : words) {
        EXPECT_EQ(elementKind(word), expected++) << word;
    }
    EXPECT_EQ(elementKind("richedittext"), kElementRichEditText);
    EXPECT_EQ(elementKind("Button"), std::nullopt);
}

TEST(DialogWords, KnowsEachTypeOfField) {
    EXPECT_EQ(fieldType("Directory"), 30);
    EXPECT_EQ(fieldType("CheckBox"), 31);
    EXPECT_EQ(fieldType("RadioButtons"), 32);
    EXPECT_EQ(fieldType("InstallParameter"), 34);
    EXPECT_EQ(fieldType("EditBox"), 36);
    EXPECT_EQ(fieldType("PASSWORD"), 37);
    EXPECT_EQ(fieldType("Date"), std::nullopt);
}

TEST(DialogWords, KnowsEachAlignment) {
    EXPECT_EQ(horizontalAlign("left"), 20);
    EXPECT_EQ(horizontalAlign("Center"), 22);
    EXPECT_EQ(horizontalAlign("right"), 23);
    EXPECT_EQ(horizontalAlign("top"), 0);
    EXPECT_EQ(verticalAlign("top"), 21);
    EXPECT_EQ(verticalAlign("center"), 22);
    EXPECT_EQ(verticalAlign("BOTTOM"), 24);
    EXPECT_EQ(verticalAlign("left"), 0);
}

TEST(DialogWords, KnowsEachTypeOfTrigger) {
    EXPECT_EQ(triggerType("VarChange"), 0);
    EXPECT_EQ(triggerType("RunActions"), 1);
    EXPECT_EQ(triggerType("VarReset"), 2);
    EXPECT_EQ(triggerType("VarRecalculation"), 3);
    EXPECT_EQ(triggerType("FileCheck"), 4);
    EXPECT_EQ(triggerType("debugexpression"), 5);
    EXPECT_EQ(triggerType("Other"), std::nullopt);
}

TEST(DialogWords, AddsUpSpecialWords) {
    EXPECT_EQ(special("AutoNext;Busy"), 4U | 32U);
    EXPECT_EQ(special("BadFinish"), 1U);
    EXPECT_EQ(special("1"), 1U);
    EXPECT_EQ(special("hassubdialogs;Finish;WeakCondition;Automated;Other;;AutoNext;AutoNext"),
              2U | 8 | 16 | 64 | 4);
    EXPECT_EQ(special(""), 0U);
}

TEST(DialogWords, AddsUpMoments) {
    EXPECT_EQ(triggerMoments("Start"), 1U);
    EXPECT_EQ(triggerMoments("set"), 1U);
    EXPECT_EQ(triggerMoments("Dynamic;End"), 6U);
    EXPECT_EQ(triggerMoments("DlgEval;EvalDlg;x"), 8U);
}

}  // namespace
