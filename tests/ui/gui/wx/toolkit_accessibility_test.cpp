#include <gtest/gtest.h>

#include <string>

#include "ui/gui/wx/screen_reader.h"
#include "ui/gui/wx/window_fixture.h"

namespace {

class ToolkitAccessibility : public WindowTest {
protected:
    SpokenControl spoken(ControlId control) {
        SpokenControl told;
        const auto isThere = [&] {
            told = readControl(kTitle, toolkit->place(control));
            return !told.role.empty();
        };
        // GTK places a control when it draws.
        waitUntil(isThere, "the control");
        return told;
    }
};

struct Captioned {
    ControlKind kind;
    const char* role;
};

constexpr Captioned kCaptioned[] = {
    {ControlKind::kButton, "button"},
    {ControlKind::kLinkButton, "link"},
    {ControlKind::kCheckBox, "check box"},
    {ControlKind::kRadioButton, "radio button"},
};

}  // namespace

TEST_F(ToolkitAccessibility, WhatHasACaptionIsNamedByIt) {
    for (const bool themed : {false, true}) {
        inFrame(
            [&] {
                const ControlId label = show(ControlKind::kLabel, "Scope");
                for (const Captioned& captioned : kCaptioned) {
                    const ControlId control = show(captioned.kind, "&Typical");
                    EXPECT_EQ(spoken(control).name, "Typical") << captioned.role;
                    toolkit->setLabel(control, label);
                    EXPECT_EQ(spoken(control).name, "Typical") << captioned.role;
                }
                const ControlId value = show(ControlKind::kLabel, "1.0");
                toolkit->setLabel(value, label);
                EXPECT_EQ(spoken(value).name, "1.0");
            },
            themed);
    }
}

// The system's own controls tell their roles and states themselves.
TEST_F(ToolkitAccessibility, DrawnControlsTellTheirRoleAndState) {
    inFrame(
        [&] {
            for (const Captioned& captioned : kCaptioned) {
                const ControlId control = show(captioned.kind, "Typical");
                EXPECT_EQ(spoken(control).role, captioned.role);
                EXPECT_TRUE(spoken(control).isEnabled) << captioned.role;
                EXPECT_FALSE(spoken(control).isChecked) << captioned.role;
                if (captioned.kind == ControlKind::kCheckBox || captioned.kind == ControlKind::kRadioButton) {
                    toolkit->setChecked(control, true);
                    EXPECT_TRUE(spoken(control).isChecked) << captioned.role;
                }
                toolkit->enable(control, false);
                EXPECT_FALSE(spoken(control).isEnabled) << captioned.role;
            }
            const ControlId bar = show(ControlKind::kProgressBar);
            EXPECT_EQ(spoken(bar).role, "progress bar");
            toolkit->setProgress(bar, 40);
            EXPECT_EQ(spoken(bar).percent, 40);
        },
        true);
}

TEST_F(ToolkitAccessibility, AFieldIsNamedByItsLabel) {
    for (const bool themed : {false, true}) {
        inFrame(
            [&] {
                const ControlId label = show(ControlKind::kLabel, "Directory");
                for (const ControlKind kind :
                     {ControlKind::kTextBox, ControlKind::kPasswordBox, ControlKind::kProgressBar}) {
                    const ControlId control = show(kind);
                    toolkit->setText(control, "content");
                    toolkit->setLabel(control, label);
                    EXPECT_EQ(spoken(control).name, "Directory") << static_cast<int>(kind);
                }
            },
            themed);
    }
}

TEST_F(ToolkitAccessibility, ADocumentTellsItsWords) {
    inFrame([&] {
        for (const ControlKind kind : {ControlKind::kRichText, ControlKind::kHtml}) {
            const ControlId document = add(kind, {}, {10, 10, 300, 200});
            toolkit->show(document, true);
            toolkit->setText(document, "Agreement\nSome words.");
            toolkit->setHtml(document, "<p>Agreement</p><p>Some words.</p>");
            const SpokenControl told = spoken(document);
            EXPECT_EQ(told.role, "document") << static_cast<int>(kind);
            EXPECT_EQ(told.name, "Agreement") << static_cast<int>(kind);
            EXPECT_NE(told.description.find("Some words."), std::string::npos) << told.description;
            toolkit->remove(document);
        }
    });
}

TEST_F(ToolkitAccessibility, AGivenNameComesBeforeAll) {
    inFrame([&] {
        ControlSpec spec;
        spec.kind = ControlKind::kRichText;
        spec.place = {10, 10, 300, 200};
        spec.text = "Agreement";
        spec.name = "Licence";
        const ControlId document = toolkit->add(spec);
        toolkit->show(document, true);
        EXPECT_EQ(spoken(document).name, "Licence");
        toolkit->setText(document, "Other words");
        EXPECT_EQ(spoken(document).name, "Licence");
    });
}
