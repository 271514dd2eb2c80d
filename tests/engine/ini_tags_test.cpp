#include "engine/ini_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;

class IniTagsTest : public TagsTest {
protected:
    int apply(const std::string& children) {
        describe("<IniFiles>" + children +
                 "</IniFiles><IniFiles><Add FileName='last.ini' Section='s' Key='k'>v"
                 "</Add></IniFiles>");
        return walker_.apply(&ui_);
    }

    const std::string last_ = "addIniEntry(last.ini, s, k, v, text, null)";
    IniTags walker_{context_};
};

TEST_F(IniTagsTest, HandAnEntryOnWithItsTextsExpanded) {
    variables_.setVariable("D", "C:\\apps");
    EXPECT_EQ(
        apply("<Add FileName='[D]\\\\demo.ini' Section='[D]s' Key='[D]k' IsPath='' BeforeKey='[D]b'>[D]v"
              "</Add>"),
        0);
    EXPECT_THAT(changes_.calls,
                ElementsAre("addIniEntry(C:\\apps\\demo.ini, C:\\appss, C:\\appsk, C:\\appsv, "
                            "path, C:\\appsb)",
                            last_));
    EXPECT_EQ(records(), "INI\tUNDO\r\nINI\tUNDO\r\n");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)", "addFileLine(null, 1)"));
}

TEST_F(IniTagsTest, PassOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_EQ(apply("<Add Section='s' Key='k'>v</Add><Add FileName='f' Key='k'>v</Add>"
                    "<Add FileName='f' Section='s'>v</Add><Add FileName='f' Section='s' Key='k'></Add>"
                    "<Put FileName='f' Section='s' Key='k'>v</Put>"
                    "<Add FileName='f' Section='s' Key='k' Condition='1==2'>v</Add>"),
              0);
    EXPECT_EQ(changes_.calls.back(), last_);
    EXPECT_LE(changes_.calls.size(), 2U);  // an element that ends at once may count as one with an empty text
}

TEST_F(IniTagsTest, EndAGroupWithItsFailureAndGoOnWithTheNext) {
    changes_.failing = {"addIniEntry(f)"};
    EXPECT_EQ(
        apply("<Add FileName='f' Section='s' Key='k'>v</Add><Add FileName='g' Section='s' Key='k'>v</Add>"),
        1);
    EXPECT_THAT(changes_.calls, ElementsAre("addIniEntry(f, s, k, v, text, null)", last_));
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Updating INI: \"f\""));
}

TEST_F(IniTagsTest, RecordAFailureThatIsIgnoredAndGoOn) {
    changes_.failing = {"addIniEntry(f)"};
    EXPECT_EQ(apply("<Add FileName='f' Section='s' Key='k' IgnoreErrors='0'>v</Add>"
                    "<Add FileName='g' Section='s' Key='k'>v</Add>"),
              0);
    EXPECT_THAT(changes_.calls, ElementsAre("addIniEntry(f, s, k, v, text, null)",
                                            "addIniEntry(g, s, k, v, text, null)", last_));
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Updating INI: \"f\""));
    EXPECT_EQ(records(), "INI\tUNDO\r\nINI\tUNDO\r\nINI\tUNDO\r\n");
}

}  // namespace
