#include "ui/gui/dialog_field_factory.h"

#include "ui/gui/page_fixture.h"

namespace {

class DialogFieldFactoryTest : public PageTest {};

TEST_F(DialogFieldFactoryTest, EachTypeOfTheDescriptionHasItsField) {
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

TEST_F(DialogFieldFactoryTest, AnUnknownTypeHasNone) {
    DialogFieldDesc description;
    EXPECT_EQ(makeDialogField(*this, description), nullptr);
}

}  // namespace
