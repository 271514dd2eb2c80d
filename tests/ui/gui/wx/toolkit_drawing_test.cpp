#include <gtest/gtest.h>

#include "ui/gui/wx/window_fixture.h"

namespace {

constexpr std::int32_t kWhite = 0xFFFFFF;
constexpr std::int32_t kBrown = 0x104080;
constexpr Dot kBrownDot{0x80, 0x40, 0x10};
constexpr Place kPlace{20, 20, 100, 40};

using ToolkitDrawing = WindowTest;

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
