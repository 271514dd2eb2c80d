#include "ui/console/progress_line.h"

#include <algorithm>
#include <utility>

#include "base/text_columns.h"
#include "base/utf8_character.h"
#include "base/visible_text.h"
#include "platform/console_device.h"

namespace {

constexpr std::uint64_t kSilentMilliseconds = 1000;
constexpr std::uint64_t kMillisecondsBetween = 200;
constexpr std::int64_t kMegabyte = 1'000'000;

// The end of a name tells more of a path than its start.
std::string lastColumns(std::string_view text, std::size_t columns) {
    const std::string valid = OUtils::visibleText(text);
    std::string_view rest = valid;
    while (OUtils::columnsOf(rest) > columns) {
        rest.remove_prefix(std::max<std::size_t>(OUtils::utf8CharacterLength(rest), 1));
    }
    return std::string(rest);
}

std::string amountOf(std::int64_t done, std::int64_t total, std::uint64_t milliseconds) {
    const std::int64_t percent = total > 0 ? std::clamp<std::int64_t>(done / (total / 100 + 1), 0, 99) : 0;
    const auto elapsed = static_cast<double>(std::max<std::uint64_t>(milliseconds, 1));
    const auto rate = static_cast<std::int64_t>(static_cast<double>(done) * 1000 / elapsed / kMegabyte);
    return std::to_string(percent) + " %  " + std::to_string(rate) + " MB/s  ";
}

}  // namespace

ProgressLine::ProgressLine(platform::ConsoleDevice& terminal, Milliseconds now)
    : terminal_(terminal), now_(std::move(now)) {}

void ProgressLine::begin(std::string_view name) {
    end();
    name_ = name;
    start_ = now_();
    shownAt_ = 0;
}

void ProgressLine::show(std::int64_t done, std::int64_t total) {
    if (done >= total) {
        end();
        return;
    }
    const std::uint64_t now = now_();
    if (now - start_ >= kSilentMilliseconds && now - shownAt_ >= kMillisecondsBetween) {
        shownAt_ = now;
        draw(done, total, now);
    }
}

void ProgressLine::draw(std::int64_t done, std::int64_t total, std::uint64_t now) {
    int columns = 0;
    int rows = 0;
    const std::string amount = amountOf(done, total, now - start_);
    // In the last column some terminals go on to the next line.
    if (!terminal_.windowSize(columns, rows) || static_cast<std::size_t>(columns) <= amount.size()) {
        return;
    }
    const std::size_t room = static_cast<std::size_t>(columns) - 1 - amount.size();
    const std::string line = amount + lastColumns(name_, room);
    const std::size_t width = OUtils::columnsOf(line);
    terminal_.writeControl("\r");
    terminal_.write(line + std::string(width_ > width ? width_ - width : 0, ' '));
    terminal_.writeControl("\r");
    terminal_.flush();
    width_ = std::max(width, width_);
}

void ProgressLine::end() {
    if (width_ > 0) {
        terminal_.writeControl("\r" + std::string(width_, ' ') + "\r");
        terminal_.flush();
        width_ = 0;
    }
}
