#include "engine/environment_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;

class EnvironmentTagsTest : public TagsTest {
protected:
    int apply(const std::string& groups) {
        describe(groups);
        return walker_.apply(&ui_);
    }

    EnvironmentTags walker_{context_};
};

TEST_F(EnvironmentTagsTest, DoNothingWithoutAGroup) {
    EXPECT_EQ(apply("<Installation/>"), 0);
    EXPECT_TRUE(changes_.calls.empty());
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(EnvironmentTagsTest, HandEachKindOnWithItsMode) {
    variables_.setVariable("DIR", "C:\\apps");
    EXPECT_EQ(
        apply("<Environment><Replace VarName='A'>[DIR]</Replace><Append VarName='B' IsPath='0'>b</Append>"
              "<Insert VarName='C'>c</Insert></Environment>"),
        0);
    EXPECT_THAT(changes_.calls,
                ElementsAre("addEnvironmentEntry(A, C:\\apps, 1, text)", "addEnvironmentEntry(B, b, 2, path)",
                            "addEnvironmentEntry(C, c, 3, text)", "broadcastEnvironmentChange()"));
    EXPECT_EQ(records(), "ENV\tUNDO\r\nENV\tUNDO\r\nENV\tUNDO\r\n");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)"));
}

TEST_F(EnvironmentTagsTest, PassOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_EQ(apply("<Environment><Replace>x</Replace><Drop VarName='A'>x</Drop>"
                    "<Replace VarName='A' Condition='1==2'>x</Replace></Environment>"
                    "<Environment Condition='1==2'><Replace VarName='A'>x</Replace></Environment>"),
              0);
    EXPECT_TRUE(changes_.calls.empty());
    EXPECT_EQ(records(), "");
}

TEST_F(EnvironmentTagsTest, EndAGroupWithItsFailureAndGoOnWithTheNext) {
    changes_.failing = {"addEnvironmentEntry(A)"};
    EXPECT_EQ(
        apply("<Environment><Replace VarName='A'>x</Replace><Replace VarName='B'>y</Replace></Environment>"
              "<Environment><Replace VarName='C'>z</Replace></Environment>"),
        1);
    EXPECT_THAT(changes_.calls,
                ElementsAre("addEnvironmentEntry(A, x, 1, text)", "addEnvironmentEntry(C, z, 1, text)"));
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Updating ENV: A=\"x\""));
    EXPECT_EQ(records(), "ENV\tUNDO\r\n");
}

TEST_F(EnvironmentTagsTest, TellTheSystemOfAPathThatWasThereAlready) {
    changes_.undo = "NONE";
    EXPECT_EQ(apply("<Environment><Append VarName='PATH' IsPath='1'>x</Append></Environment>"), 0);
    EXPECT_EQ(records(), "ENV\tNONE\r\n");
    EXPECT_EQ(changes_.calls.back(), "broadcastEnvironmentChange()");
}

TEST_F(EnvironmentTagsTest, FailWhenTheSystemCannotBeTold) {
    changes_.failing = {"broadcastEnvironmentChange"};
    EXPECT_EQ(apply("<Environment><Replace VarName='A'>x</Replace></Environment>"), 1);
}

TEST_F(EnvironmentTagsTest, NeedNoFrontEnd) {
    describe("<Environment><Replace VarName='A'>x</Replace></Environment>");
    EXPECT_EQ(walker_.apply(nullptr), 0);
}

}  // namespace
