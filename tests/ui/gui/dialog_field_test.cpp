#include "ui/gui/dialog_field.h"

#include "ui/gui/page_fixture.h"

namespace {

class DialogFieldTest : public PageTest {};

TEST_F(DialogFieldTest, EachTypeOfTheDescriptionHasItsField) {
    for (const std::int32_t type : {kFieldDirectory, kFieldCheckBox, kFieldRadioButtons,
                                    kFieldInstallParameter, kFieldEditBox, kFieldPassword}) {
        DialogFieldDesc description;
        description.type = type;
        description.content.assign("item");
        const auto field = makeDialogField(*this, description);
        ASSERT_NE(field, nullptr) << type;
        field->create();
        EXPECT_FALSE(window.controls.empty()) << type;
        for (const auto& [id, control] : window.controls) {
            EXPECT_FALSE(control.isShown) << type;
            EXPECT_TRUE(field->owns(id)) << type;
        }
    }
    EXPECT_TRUE(window.controls.empty());
}

TEST_F(DialogFieldTest, AnUnknownTypeHasNone) {
    DialogFieldDesc description;
    EXPECT_EQ(makeDialogField(*this, description), nullptr);
}

TEST_F(DialogFieldTest, ShowsNothingThatIsntText) {
    DialogFieldDesc description;
    description.type = kFieldCheckBox;
    description.label.assign("bad \xff byte");
    const auto field = makeDialogField(*this, description);
    field->create();
    EXPECT_EQ(window.the(ControlKind::kCheckBox).text, "bad ? byte");
}

}  // namespace
