#include "rehearsal/line_difference.h"

#include <algorithm>
#include <cstdint>

namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kContext = 3;
// So many comparisons take a fraction of a second.
constexpr std::size_t kMostPairs = 9'000'000;

class Comparison {
public:
    Comparison(const Lines& expected, const Lines& found, const LinesFit& fits)
        : expected_(expected), found_(found), fits_(fits) {}

    Lines run() {
        const std::size_t common = std::min(expected_.size(), found_.size());
        while (begin_ < common && fits_(expected_[begin_], found_[begin_])) {
            ++begin_;
        }
        while (end_ < common - begin_ && fits_(last(expected_), last(found_))) {
            ++end_;
        }
        for (std::size_t i = 0; i < begin_; ++i) {
            keep(found_[i]);
        }
        compareMiddle();
        for (std::size_t i = found_.size() - end_; i < found_.size(); ++i) {
            keep(found_[i]);
        }
        return std::move(lines_);
    }

private:
    const std::string& last(const Lines& lines) const { return lines[lines.size() - 1 - end_]; }
    void keep(const std::string& line) { lines_.push_back(" " + line); }
    void drop(const std::string& line) { lines_.push_back("-" + line); }
    void add(const std::string& line) { lines_.push_back("+" + line); }

    void compareMiddle() {
        const std::size_t height = expected_.size() - begin_ - end_;
        const std::size_t width = found_.size() - begin_ - end_;
        if (height != 0 && width > kMostPairs / height) {
            for (std::size_t i = 0; i < height; ++i) {
                drop(expected_[begin_ + i]);
            }
            for (std::size_t j = 0; j < width; ++j) {
                add(found_[begin_ + j]);
            }
            return;
        }
        walk(height, width, longestRuns(height, width));
    }

    // For each pair of places, the most lines that fit from there on.
    std::vector<std::uint32_t> longestRuns(std::size_t height, std::size_t width) const {
        std::vector<std::uint32_t> runs((height + 1) * (width + 1), 0);
        for (std::size_t i = height; i-- > 0;) {
            for (std::size_t j = width; j-- > 0;) {
                std::uint32_t& run = runs[i * (width + 1) + j];
                run = fits_(expected_[begin_ + i], found_[begin_ + j])
                          ? runs[(i + 1) * (width + 1) + j + 1] + 1
                          : std::max(runs[(i + 1) * (width + 1) + j], runs[i * (width + 1) + j + 1]);
            }
        }
        return runs;
    }

    void walk(std::size_t height, std::size_t width, const std::vector<std::uint32_t>& runs) {
        std::size_t i = 0;
        std::size_t j = 0;
        while (i < height || j < width) {
            const bool isBoth = i < height && j < width;
            if (isBoth && fits_(expected_[begin_ + i], found_[begin_ + j])) {
                keep(found_[begin_ + j]);
                ++i;
                ++j;
            } else if (j == width ||
                       (isBoth && runs[(i + 1) * (width + 1) + j] >= runs[i * (width + 1) + j + 1])) {
                drop(expected_[begin_ + i++]);
            } else {
                add(found_[begin_ + j++]);
            }
        }
    }

    const Lines& expected_;
    const Lines& found_;
    const LinesFit& fits_;
    std::size_t begin_ = 0;  // lines at the start that fit
    std::size_t end_ = 0;    // and at the end
    Lines lines_;
};

// Without the lines that are far from any change.
Lines shortened(const Lines& lines) {
    std::vector<bool> isNear(lines.size(), false);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].starts_with(' ')) {
            const std::size_t end = std::min(i + kContext + 1, lines.size());
            for (std::size_t j = i - std::min(i, kContext); j < end; ++j) {
                isNear[j] = true;
            }
        }
    }
    Lines result;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (isNear[i]) {
            result.push_back(lines[i]);
        } else if (i == 0 || isNear[i - 1]) {
            result.emplace_back("...");
        }
    }
    return result;
}

}  // namespace

std::vector<std::string> lineDifference(const Lines& expected, const Lines& found, const LinesFit& fits) {
    const Lines lines = Comparison(expected, found, fits).run();
    const bool isSame =
        std::ranges::all_of(lines, [](const std::string& line) { return line.front() == ' '; });
    return isSame ? Lines() : shortened(lines);
}
