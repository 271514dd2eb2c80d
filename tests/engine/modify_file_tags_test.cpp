#include "engine/modify_file_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;

class ModifyFileTagsTest : public TagsTest {
protected:
    int apply(const std::string& groups) {
        describe(groups);
        return walker_.apply(&ui_);
    }

    ModifyFileTags walker_{context_};
};

TEST_F(ModifyFileTagsTest, HandAChangeOnWithItsPathsExpanded) {
    variables_.setVariable("D", "C:/apps");
    EXPECT_EQ(
        apply("<ModifyFiles><File Path='[D]//a.txt' Command='AddAfter'>[D]/change.txt</File></ModifyFiles>"),
        0);
    EXPECT_THAT(changes_.calls, ElementsAre("modifyFile(C:/apps/a.txt, C:/apps/change.txt)"));
    EXPECT_EQ(records(), "MODIFYFILE\tUNDO\r\n");
}

TEST_F(ModifyFileTagsTest, PassOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_EQ(apply("<ModifyFiles><File Command='AddAfter'>x</File><File Path='p'>x</File>"
                    "<File Path='p' Command='AddBefore'>x</File><Dir Path='p' Command='AddAfter'>x</Dir>"
                    "<File Path='p' Command='AddAfter' Condition='1==2'>x</File></ModifyFiles>"),
              0);
    EXPECT_TRUE(changes_.calls.empty());
}

TEST_F(ModifyFileTagsTest, EndAGroupWithItsFailureAndGoOnWithTheNext) {
    changes_.failing = {"modifyFile(p)"};
    EXPECT_EQ(apply("<ModifyFiles><File Path='p' Command='AddAfter'>x</File>"
                    "<File Path='q' Command='AddAfter'>x</File></ModifyFiles>"
                    "<ModifyFiles><File Path='r' Command='AddAfter'>x</File></ModifyFiles>"),
              1);
    EXPECT_THAT(changes_.calls, ElementsAre("modifyFile(p, x)", "modifyFile(r, x)"));
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Modifying files: \"p\""));
}

}  // namespace
