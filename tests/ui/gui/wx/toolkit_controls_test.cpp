#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ui/gui/wx/window_fixture.h"

namespace {

constexpr ControlKind kAllKinds[] = {
    ControlKind::kButton,      ControlKind::kLinkButton,  ControlKind::kText,      ControlKind::kLabel,
    ControlKind::kTextBox,     ControlKind::kPasswordBox, ControlKind::kCheckBox,  ControlKind::kRadioButton,
    ControlKind::kProgressBar, ControlKind::kLine,        ControlKind::kFrame,     ControlKind::kLines,
    ControlKind::kRichText,    ControlKind::kHtml,        ControlKind::kPlainText, ControlKind::kTaskList,
    ControlKind::kPicture,
};

class ToolkitControls : public WindowTest, public testing::WithParamInterface<bool> {
protected:
    bool isThemed() const { return GetParam(); }
};

}  // namespace

TEST_P(ToolkitControls, MakesEachKindHiddenAndEnabledAtItsPlace) {
    inFrame(
        [&] {
            for (const ControlKind kind : kAllKinds) {
                const Place place{10, 20, 130, 40};
                const ControlId control = add(kind, "words", place);
                ASSERT_NE(control, 0) << static_cast<int>(kind);
                EXPECT_FALSE(toolkit->isShown(control)) << static_cast<int>(kind);
                EXPECT_TRUE(toolkit->isEnabled(control)) << static_cast<int>(kind);
                EXPECT_EQ(toolkit->place(control), place) << static_cast<int>(kind);
                toolkit->show(control, true);
                toolkit->processEvents();
                EXPECT_TRUE(toolkit->isShown(control)) << static_cast<int>(kind);
                EXPECT_EQ(toolkit->place(control), place) << static_cast<int>(kind);
                toolkit->remove(control);
                EXPECT_FALSE(toolkit->isShown(control)) << static_cast<int>(kind);
            }
        },
        isThemed());
}

TEST_P(ToolkitControls, PlacesAControlAnew) {
    inFrame(
        [&] {
            const ControlId control = show(ControlKind::kButton, "Next");
            toolkit->setPlace(control, {30, 40, 120, 35});
            EXPECT_EQ(toolkit->place(control), (Place{30, 40, 120, 35}));
            toolkit->setPlace(control, {-5, -6, 0, 0});
            EXPECT_EQ(toolkit->place(control).x, -5);
            EXPECT_GT(toolkit->place(control).width, 20);
            EXPECT_GT(toolkit->place(control).height, 10);
        },
        isThemed());
}

TEST_P(ToolkitControls, PressesAButtonByMouseSpaceAndLink) {
    inFrame(
        [&] {
            const ControlId button = show(ControlKind::kButton, "Next");
            const ControlId link = show(ControlKind::kLinkButton, "More");
            click(button);
            expectNoted({press(button)});
            click(link);
            expectNoted({press(link)});
            focus(button);
            key("space");
            expectNoted({press(button)});
        },
        isThemed());
}

TEST_P(ToolkitControls, ADisabledButtonIsNotPressed) {
    inFrame(
        [&] {
            const ControlId disabled = show(ControlKind::kButton, "Next");
            const ControlId enabled = show(ControlKind::kButton, "Other");
            toolkit->enable(disabled, false);
            EXPECT_FALSE(toolkit->isEnabled(disabled));
            click(disabled);
            click(enabled);
            expectNoted({press(enabled)});
        },
        isThemed());
}

TEST_P(ToolkitControls, AButtonMayRemoveItselfWhileItIsPressed) {
    inFrame(
        [&] {
            const ControlId button = show(ControlKind::kButton, "Next");
            ControlId next = 0;
            onPressed = [&](ControlId control) {
                if (next == 0) {
                    toolkit->remove(control);
                    next = show(ControlKind::kButton, "Finish");
                    toolkit->processEvents();
                }
            };
            click(button);
            waitFor(press(button));
            click(next);
            expectNoted({press(button), press(next)});
        },
        isThemed());
}

TEST_P(ToolkitControls, ACheckBoxChangesByTheWholeCaption) {
    inFrame(
        [&] {
            const ControlId box = show(ControlKind::kCheckBox, "Install the manual, which is long enough");
            EXPECT_FALSE(toolkit->isChecked(box));
            toolkit->setChecked(box, true);
            EXPECT_TRUE(toolkit->isChecked(box));
            EXPECT_TRUE(notes.empty());
            click(box);
            expectNoted({press(box)});
            EXPECT_FALSE(toolkit->isChecked(box));
            focus(box);
            key("space");
            expectNoted({press(box)});
            EXPECT_TRUE(toolkit->isChecked(box));
        },
        isThemed());
}

TEST_P(ToolkitControls, OfAGroupOfRadioButtonsNoneIsChosenAtFirst) {
    inFrame(
        [&] {
            ControlSpec spec;
            spec.kind = ControlKind::kRadioButton;
            std::vector<ControlId> buttons;
            for (int i = 0; i < 4; ++i) {
                spec.startsGroup = i % 2 == 0;
                spec.text = "choice";
                spec.place = {20, 20 + 40 * i, 200, 30};
                buttons.push_back(toolkit->add(spec));
                toolkit->show(buttons.back(), true);
            }
            const auto chosen = [&] {
                std::string result;
                for (const ControlId button : buttons) {
                    result += toolkit->isChecked(button) ? '1' : '0';
                }
                return result;
            };
            EXPECT_EQ(chosen(), "0000");
            toolkit->setChecked(buttons[0], true);
            toolkit->setChecked(buttons[3], true);
            EXPECT_EQ(chosen(), "1001");
            toolkit->setChecked(buttons[1], false);
            EXPECT_EQ(chosen(), "1001");
            toolkit->setChecked(buttons[0], false);
            EXPECT_EQ(chosen(), "0001");
            EXPECT_TRUE(notes.empty());
            click(buttons[1]);
            expectNoted({press(buttons[1])});
            EXPECT_EQ(chosen(), "0101");
            click(buttons[1]);
            click(buttons[2]);
            expectNoted({press(buttons[2])});
            EXPECT_EQ(chosen(), "0110");
        },
        isThemed());
}

TEST_P(ToolkitControls, ShowsProgressPicturesAndOrnaments) {
    inFrame(
        [&] {
            const ControlId bar = show(ControlKind::kProgressBar);
            for (const int percent : {0, 50, 100, 130, -1}) {
                toolkit->setProgress(bar, percent);
            }
            const ControlId picture = add(ControlKind::kPicture, {}, {20, 100, 64, 64});
            const std::vector<std::uint8_t> pixels(std::size_t{64} * 64 * 3, 200);
            const std::vector<std::uint8_t> alpha(std::size_t{64} * 64, 128);
            toolkit->setPicture(picture, {64, 64, pixels.data(), nullptr});
            toolkit->show(picture, true);
            toolkit->setPicture(picture, {64, 64, pixels.data(), alpha.data()});
            toolkit->setPicture(picture, {0, 0, nullptr, nullptr});
            EXPECT_EQ(toolkit->place(picture), (Place{20, 100, 64, 64}));
            toolkit->setIcon({64, 64, pixels.data(), alpha.data()});
            show(ControlKind::kLine);
            toolkit->redraw();
            toolkit->announce("Half of it is done");
            key("shift");
        },
        isThemed());
}

TEST_P(ToolkitControls, TakesColoursTipsAndLabels) {
    inFrame(
        [&] {
            const ControlId label = show(ControlKind::kLabel, "Name & address");
            EXPECT_EQ(textOf(label), "Name & address");
            for (const ControlKind kind : kAllKinds) {
                const ControlId control = add(kind, "words", {10, 60, 130, 40});
                toolkit->setColours(control, {0x112233, 0x445566, 0x778899, 0xAABBCC});
                toolkit->setToolTip(control, "a tip");
                toolkit->setLabel(control, label);
                toolkit->show(control, true);
                toolkit->setPageColours(0xFFFFFF, 0x804000);
                toolkit->redraw();
                toolkit->processEvents();
                toolkit->setColours(control, {});
                toolkit->setPageColours(-1, -1);
                toolkit->remove(control);
            }
        },
        isThemed());
}

TEST_P(ToolkitControls, AnUnknownControlIsIgnored) {
    inFrame(
        [&] {
            const ControlId gone = show(ControlKind::kTextBox, "words");
            toolkit->remove(gone);
            for (const ControlId control : {ControlId{0}, ControlId{-1}, ControlId{999}, gone}) {
                toolkit->remove(control);
                toolkit->show(control, true);
                toolkit->setText(control, "x");
                toolkit->setChecked(control, true);
                toolkit->setFocus(control);
                toolkit->setDefaultButton(control);
                EXPECT_FALSE(toolkit->isShown(control));
                EXPECT_FALSE(toolkit->isEnabled(control));
                EXPECT_FALSE(toolkit->isChecked(control));
                EXPECT_EQ(toolkit->place(control), Place());
                EXPECT_EQ(textOf(control), "");
            }
        },
        isThemed());
}

INSTANTIATE_TEST_SUITE_P(Plain, ToolkitControls, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Themed, ToolkitControls, testing::Values(true));
