#include "ui/gui/directory_field.h"

#include "platform/written_path.h"
#include "ui/gui/page_fixture.h"

namespace {

class DirectoryFieldTest : public PageTest {
protected:
    DirectoryFieldTest() {
        description.type = kFieldDirectory;
        description.variable.assign("DIR");
        description.label.assign("Directory");
        description.x = 0;
        description.width = 600;
        session.variables["DIR"] = "\\opt\\product\\";
    }

    void make() {
        field = std::make_unique<DirectoryField>(*this, description);
        field->create();
        field->place(60);
        field->load();
    }
    RecordingToolkit::Control& box() { return window.the(ControlKind::kTextBox); }

    DialogFieldDesc description;
    std::unique_ptr<DirectoryField> field;
};

TEST_F(DirectoryFieldTest, SharesItsWidthAmongLabelBoxAndButton) {
    fontScale = 2.0;
    description.width = 300;
    make();
    EXPECT_EQ(window.the(ControlKind::kLabel).place.width, 200);
    EXPECT_EQ(box().place, (Place{210, 60, 400 - 20 - 60, 21}));
    EXPECT_EQ(window.the(ControlKind::kButton, "...").place, (Place{540, 60, 60, 21}));
}

TEST_F(DirectoryFieldTest, ShowsTheDirectoryAsTheSystemWritesIt) {
    make();
    EXPECT_EQ(box().text, platform::writtenPath("\\opt\\product"));
}

TEST_F(DirectoryFieldTest, StoresADirectoryInItsUsualForm) {
    make();
    window.at(window.find(ControlKind::kTextBox)).text = " /srv//data/ ";
    field->onText();
    EXPECT_EQ(session.variables["DIR"], "\\srv\\data");
}

TEST_F(DirectoryFieldTest, IsInvalidWhenNothingIsLeftOfIt) {
    make();
    for (const char* text : {"", "   ", "\\", " / "}) {
        box().text = text;
        EXPECT_FALSE(field->validate()) << text;
    }
    box().text = "a";
    EXPECT_TRUE(field->validate());
}

TEST_F(DirectoryFieldTest, TakesTheDirectoryThatTheUserChooses) {
    make();
    window.chosenDirectory = "/srv/chosen/";
    field->onActivate(window.find(ControlKind::kButton));
    EXPECT_EQ(window.directoryTitle, "Select a directory");
    EXPECT_EQ(window.directoryStart, platform::writtenPath("\\opt\\product"));
    EXPECT_EQ(session.variables["DIR"], "\\srv\\chosen");
    EXPECT_EQ(box().text, platform::writtenPath("\\srv\\chosen"));
    EXPECT_EQ(textChanges, 1);
}

TEST_F(DirectoryFieldTest, StaysAsItIsWhenTheUserChoosesNone) {
    make();
    field->onActivate(window.find(ControlKind::kButton));
    EXPECT_EQ(session.variables["DIR"], "\\opt\\product\\");
    EXPECT_EQ(textChanges, 0);
}

TEST_F(DirectoryFieldTest, NamesItsButtonAfterTheField) {
    make();
    EXPECT_EQ(window.the(ControlKind::kButton).name, "Directory");
}

}  // namespace
