#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Which slide a page shows: a random one, but never the same twice in a row. One object for a run.
class SlideChoice {
public:
    // A random number of any size for each call.
    using RandomNumbers = std::function<std::uint32_t()>;
    explicit SlideChoice(RandomNumbers random);

    // The resource of the next slide: `name` with a number from 0 to `count` - 1 appended. None without a
    // name or a slide.
    std::optional<std::string> next(std::string_view name, std::int32_t count);

private:
    std::uint32_t draw(std::uint32_t count);

    RandomNumbers random_;
    std::optional<std::uint32_t> last_;
};
