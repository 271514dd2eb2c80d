#include "ui/gui/images/slide_choice.h"

#include <utility>

SlideChoice::SlideChoice(RandomNumbers random) : random_(std::move(random)) {}

std::optional<std::string> SlideChoice::next(std::string_view name, std::int32_t count) {
    if (name.empty() || count < 1) {
        return std::nullopt;
    }
    last_ = draw(static_cast<std::uint32_t>(count));
    return std::string(name) + std::to_string(*last_);
}

std::uint32_t SlideChoice::draw(std::uint32_t count) {
    // A source that always gives the same number must not stop the page.
    constexpr int kMaxDraws = 100;
    std::uint32_t number = random_() % count;
    for (int i = 1; number == last_ && count >= 2 && i < kMaxDraws; ++i) {
        number = random_() % count;
    }
    return number == last_ ? (number + 1) % count : number;
}
