#include <gtest/gtest.h>

#include "ui/gui/wx/window_fixture.h"

namespace {

constexpr std::int32_t kWhite = 0xFFFFFF;
constexpr std::int32_t kBrown = 0x104080;
constexpr Dot kBrownDot{0x80, 0x40, 0x10};
constexpr Place kPlace{20, 20, 100, 40};

using ToolkitDrawing = WindowTest;

// Counts the pixels of one colour.
class CountedPicture : public PictureReceiver {
public:
    void take(const Picture& picture) override {
        width = picture.width;
        height = picture.height;
        for (int i = 0; i < width * height; ++i) {
            const std::uint8_t* const pixel = picture.rgb + static_cast<std::ptrdiff_t>(i) * 3;
            brown += pixel[0] == 0x80 && pixel[1] == 0x40 && pixel[2] == 0x10 ? 1 : 0;
        }
    }

    int width = 0;
    int height = 0;
    int brown = 0;
};

}  // namespace

TEST_F(ToolkitDrawing, AThemedButtonIsPalerWhileItCantBePressed) {
    inFrame(
        [&] {
            ControlSpec spec;
            spec.kind = ControlKind::kButton;
            spec.text = "i";
            spec.place = kPlace;
            spec.colours = {kWhite, kBrown, -1, -1};
            const ControlId button = toolkit->add(spec);
            toolkit->show(button, true);
            const auto brownDots = [&] {
                return pixelsOf(button).count([](const Dot& dot) { return dot == kBrownDot; });
            };
            waitUntil([&] { return brownDots() > kPlace.width * kPlace.height / 2; }, "the button's colour");
            toolkit->enable(button, false);
            waitUntil([&] { return brownDots() == 0; }, "a paler colour");
            toolkit->enable(button, true);
            waitUntil([&] { return brownDots() > kPlace.width * kPlace.height / 2; }, "the colour again");
        },
        true);
}

TEST_F(ToolkitDrawing, ThePageIsDrawnIntoAPictureWithItsControls) {
    inFrame(
        [&] {
            ControlSpec spec;
            spec.kind = ControlKind::kButton;
            spec.text = "i";
            spec.place = kPlace;
            spec.colours = {kWhite, kBrown, -1, -1};
            const ControlId button = toolkit->add(spec);
            toolkit->show(button, true);
            CountedPicture picture;
            waitUntil(
                [&] {
                    picture = {};
                    return toolkit->drawPage(picture) && picture.brown > kPlace.width * kPlace.height / 2;
                },
                "the button in the picture");
            EXPECT_EQ(picture.width, static_cast<int>(toolkit->clientSize().width * toolkit->pixelDensity()));
            EXPECT_EQ(picture.height,
                      static_cast<int>(toolkit->clientSize().height * toolkit->pixelDensity()));
            toolkit->show(button, false);
            waitUntil([&] { return toolkit->drawPage(picture = CountedPicture()) && picture.brown == 0; },
                      "a page without it");
        },
        true);
}

TEST_F(ToolkitDrawing, ThereIsNoPictureWithoutAFrame) {
    inLoop([&] {
        CountedPicture picture;
        EXPECT_FALSE(toolkit->drawPage(picture));
        EXPECT_EQ(picture.width, 0);
    });
}

TEST_F(ToolkitDrawing, WordsNeedWhatTheyAreLong) {
    inFrame([&] {
        for (const ControlKind kind :
             {ControlKind::kButton, ControlKind::kCheckBox, ControlKind::kRadioButton, ControlKind::kText,
              ControlKind::kLabel, ControlKind::kTextBox}) {
            ControlSpec spec;
            spec.kind = kind;
            spec.text = "Words";
            spec.startsGroup = true;
            spec.place = {10, 10, 300, 40};
            const ControlId control = toolkit->add(spec);
            toolkit->show(control, true);
            const Extent words = toolkit->wordsSize(control);
            EXPECT_GE(words.width, toolkit->measureText("Words").width) << static_cast<int>(kind);
            EXPECT_LT(words.width, 300);
            EXPECT_GT(words.height, 0);
            EXPECT_LE(words.height, 40);
        }
        ControlSpec spec;
        spec.kind = ControlKind::kText;
        spec.text = "Words that need more than one line";
        spec.place = {10, 10, toolkit->measureText("Words that").width + 4, 0};
        EXPECT_GT(toolkit->wordsSize(toolkit->add(spec)).height, toolkit->measureText("Words").height);
        spec.kind = ControlKind::kPasswordBox;
        EXPECT_EQ(toolkit->wordsSize(toolkit->add(spec)), Extent());
    });
}

TEST_F(ToolkitDrawing, ABoxIsWideEnoughForItsWordsWithTheSpaceAroundThem) {
    inFrame([&] {
        ControlSpec spec;
        spec.kind = ControlKind::kTextBox;
        spec.text = "A line of words in a box";
        spec.place = {10, 10, toolkit->measureText(spec.text).width, 30};
        const ControlId box = toolkit->add(spec);
        toolkit->show(box, true);
        EXPECT_GT(toolkit->wordsSize(box).width, toolkit->measureText(spec.text).width);
        toolkit->setText(box, "");
        EXPECT_EQ(toolkit->wordsSize(box), Extent());
    });
}

TEST_F(ToolkitDrawing, AListOfTasksNeedsWhatItsLongestRowIsLong) {
    inFrame([&] {
        ControlSpec spec;
        spec.kind = ControlKind::kTaskList;
        spec.place = {10, 10, 200, 100};
        const ControlId tasks = toolkit->add(spec);
        toolkit->show(tasks, true);
        const std::string longest = "A task that is longer than others";
        toolkit->addTask(tasks, {"Short", -1, -1, false, ""});
        toolkit->addTask(tasks, {longest, -1, -1, false, ""});
        const int needed = toolkit->wordsSize(tasks).width;
        EXPECT_GE(needed, toolkit->measureText(longest).width);
        EXPECT_LT(needed, toolkit->measureText(longest).width + 40);
        toolkit->setPlace(tasks, {10, 10, 50, 100});
        EXPECT_EQ(toolkit->wordsSize(tasks).width, needed);
        EXPECT_EQ(toolkit->place(tasks).width, 50);
    });
}
