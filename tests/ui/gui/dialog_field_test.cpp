#include "ui/gui/dialog_field.h"

#include "ui/gui/check_box_field.h"
#include "ui/gui/page_fixture.h"

namespace {

class DialogFieldTest : public PageTest {};

TEST_F(DialogFieldTest, ShowsNothingThatIsntText) {
    DialogFieldDesc description;
    description.type = kFieldCheckBox;
    description.label.assign("bad \xff byte");
    CheckBoxField field(*this, description);
    field.create();
    EXPECT_EQ(window.the(ControlKind::kCheckBox).text, "bad ? byte");
}

}  // namespace
