#include "description/unknown_names.h"

#include "description/default_values_fixture.h"

namespace {

using Lines = std::vector<std::string>;

class UnknownNamesTest : public DefaultValuesFixture {
protected:
    UnknownNamesTest() {
        parse(
            "<Root><DefValues><Value Name='DIR' DataType='value'>$BASE_DIR/x</Value>"
            "<Value Name='MODE' DataType='cmdlinearg'/></DefValues>"
            "<Dialogs><Ask><Field Label='Your name'>OWNER</Field>"
            "<Trigger Variable='LATE' Value='[KIND] late'/></Ask></Dialogs></Root>");
        given_.arguments = &arguments_;
        given_.programOptions = {"gui", "auto"};
    }

    Lines remarks() { return remarksOnGivenNames(document_, expressions_, given_); }
    Lines remarksOnAnswers(std::string_view content) {
        files_.addFile("/a.xml", std::string(content));
        AnswersFile answers(files_);
        answers.load("/a.xml");
        given_.answers = &answers.document();
        given_.answersPath = "/a.xml";
        return remarks();
    }

    GivenNames given_;
};

TEST_F(UnknownNamesTest, SaysNothingOfWhatIsKnown) {
    arguments_.list = {
        {"gui", "0"}, {"MODE", "x"}, {"mode", "x"}, {"VARIABLE_DIR", "x"}, {"variable_dir", "x"}};
    EXPECT_EQ(remarks(), Lines());
    given_.arguments = nullptr;
    EXPECT_EQ(remarks(), Lines());
}

TEST_F(UnknownNamesTest, KnowsAVariableByEveryKindOfMention) {
    arguments_.list = {
        {"VARIABLE_BASE_DIR", "x"}, {"VARIABLE_OWNER", "x"}, {"VARIABLE_LATE", "x"}, {"VARIABLE_KIND", "x"}};
    EXPECT_EQ(remarks(), Lines());
}

TEST_F(UnknownNamesTest, ReportsVariablesThatTheDescriptionDoesNotHave) {
    arguments_.list = {{"VARIABLE_DIRR", "x"}, {"variable_name", "x"}};
    EXPECT_EQ(remarks(), (Lines{"-VARIABLE_DIRR: the description has no variable DIRR",
                                "-variable_name: the description has no variable name"}));
}

TEST_F(UnknownNamesTest, ReportsOptionsThatNobodyReads) {
    arguments_.list = {{"GUI", "0"}, {"verbose", ""}, {"VARIABLE_", "x"}, {"", ""}};
    EXPECT_EQ(remarks(), (Lines{"-GUI: there is no such option, and it has no effect",
                                "-verbose: there is no such option, and it has no effect",
                                "-VARIABLE_: there is no such option, and it has no effect",
                                "-: there is no such option, and it has no effect"}));
}

TEST_F(UnknownNamesTest, ReportsAnEmptyValueThatCountsAsOne) {
    arguments_.list = {{"VARIABLE_DIR", ""}, {"VARIABLE_OWNER", ""}};
    arguments_.emptied = {0};
    EXPECT_EQ(remarks(), Lines{"-VARIABLE_DIR= has no value and counts as 1"});
}

TEST_F(UnknownNamesTest, ReportsVariablesThatCannotBeSet) {
    arguments_.list = {{"VARIABLE_GUI_INSTALL", "1"}};
    EXPECT_EQ(remarks(),
              Lines{"-VARIABLE_GUI_INSTALL: this variable can't be set, and the option has no effect"});
    arguments_.list.clear();
    EXPECT_EQ(remarksOnAnswers("<DefValues><Value Name='TEMP_DIR' DataType='value'>x</Value></DefValues>"),
              Lines{"/a.xml: the variable TEMP_DIR can't be set"});
}

TEST_F(UnknownNamesTest, ReportsAnswersToNobodysQuestions) {
    EXPECT_EQ(remarksOnAnswers("<DefValues><Value Name='DIR' DataType='value'>x</Value>"
                               "<Value Name='DIRR' DataType='value'>x</Value><Other Name='O'/></DefValues>"),
              Lines{"/a.xml: the description has no variable DIRR"});
    EXPECT_EQ(remarksOnAnswers("<Other/>"), Lines());
}

TEST_F(UnknownNamesTest, ReportsAnswersThatCannotBeExpanded) {
    variables_.set("OWNER", "me");
    EXPECT_EQ(
        remarksOnAnswers("<DefValues><Value Name='DIR' DataType='value'>/opt/$nobody</Value>"
                         "<Value Name='OWNER' DataType='envvar' Default='$nobody'/>"
                         "<Value Name='LATE' DataType='value'>$OWNER</Value>"
                         "<Value Name='KIND' DataType='value' Condition='0==1'>$nobody</Value></DefValues>"),
        Lines{"/a.xml: the value of DIR refers to a variable that doesn't exist, or is too long, and "
              "counts as empty"});
}

TEST_F(UnknownNamesTest, OptionsAreReadByTheValuesOfTheirType) {
    EXPECT_EQ(optionsReadBy(document_), std::unordered_set<std::string>{"mode"});
    EXPECT_TRUE(optionsReadBy(PXML()).empty());
}

}  // namespace
