#include "checking/check_context.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/findings_of.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CheckContextTest : public testing::Test {
protected:
    CheckContextTest() : findings_(kText) { isRead_ = source_.read(kText, findings_); }

    static constexpr std::string_view kText =
        "<TandrelGroupInstallation>\n"
        "<Dialogs><One><Text x='1' y='2'>Hello</Text><Field Type='EditBox'>A</Field></One>\n"
        "<Two><Field Type='CheckBox'>B</Field></Two></Dialogs>\n"
        "<Nonsense/></TandrelGroupInstallation>";

    Findings findings_;
    SourceDocument source_;
    MemoryFileSystem files_;
    bool isRead_ = false;
};

TEST_F(CheckContextTest, FindsElementsByTheirType) {
    ASSERT_TRUE(isRead_);
    const CheckContext context(source_, {}, findings_, files_, std::nullopt);
    EXPECT_THAT(context.nodesOf("Field"), ElementsAre(4, 6));
    EXPECT_THAT(context.nodesOf("(page)"), ElementsAre(2, 5));
    EXPECT_THAT(context.nodesOf("Button"), IsEmpty());
    EXPECT_EQ(context.firstOf("Field"), 4);
    EXPECT_EQ(context.firstOf("Button"), -1);
    EXPECT_EQ(context.typeOf(3), "(element)");
    EXPECT_EQ(context.typeOf(7), "");
    EXPECT_EQ(context.ruleOf(7), nullptr);
    EXPECT_EQ(context.enclosing(6, "(page)"), 5);
    EXPECT_EQ(context.enclosing(5, "(page)"), 5);
    EXPECT_EQ(context.enclosing(6, "Installation"), -1);
}

TEST_F(CheckContextTest, ReadsTextsAndAttributes) {
    const CheckContext context(source_, {}, findings_, files_, "/root");
    EXPECT_EQ(context.text(3), "Hello");
    EXPECT_EQ(context.text(99), "");
    EXPECT_EQ(context.attribute(4, "Type"), "EditBox");
    EXPECT_EQ(context.attribute(4, "Label"), std::nullopt);
    EXPECT_EQ(context.root(), "/root");
    EXPECT_TRUE(context.targets().windows && context.targets().linux);
}

TEST_F(CheckContextTest, PutsFindingsWhereTheyBelong) {
    const CheckContext context(source_, {}, findings_, files_, std::nullopt);
    context.addAtElement("element-unknown", 3, "element");
    context.addAtText("text-ignored", 3, "text");
    context.addAtAttribute("number-invalid", 3, "y", "value by name");
    context.addAtAttribute("number-range", 3, std::size_t{0}, "value by number");
    context.addAtAttributeName("attribute-unknown", 3, 1, "name");
    context.addAtAttribute("attribute-empty", 3, "w", "has none");
    EXPECT_THAT(shown(findings_.sorted()),
                ElementsAre("2:15 attribute-empty", "2:15 element-unknown", "2:24 number-range",
                            "2:27 attribute-unknown", "2:30 number-invalid", "2:33 text-ignored"));
}

}  // namespace
