#include "text/word_wrap.h"

#include <algorithm>
#include <vector>

namespace {

// Collects the words of one line and writes them.
class LineWriter {
public:
    LineWriter(std::string& out, const WrapLayout& layout)
        : out_(out),
          layout_(layout),
          avail_(static_cast<std::int64_t>(layout.width) - layout.indent),
          indentNext_(layout.indentFirstLine) {}

    void add(std::string_view word) {
        const std::int64_t needed = static_cast<std::int64_t>(word.size()) + 1;
        if (!words_.empty() && used_ + needed > avail_) {
            write(layout_.justify ? avail_ - used_ : 0);
        }
        words_.push_back(word);
        used_ += needed;
    }

    void finish() { write(0); }

private:
    // `extra` blanks are to be shared among the words. It is below 0 only for a single word, which has no
    // gap to put them.
    void write(std::int64_t extra) {
        if (indentNext_) {
            out_.append(layout_.indent, layout_.fillChar);
        }
        indentNext_ = true;
        const auto count = static_cast<std::int64_t>(words_.size());
        const bool isPadded = extra > 0 && count > 1;
        const std::int64_t each = isPadded ? extra / count : 0;
        std::int64_t rest = isPadded ? extra % count : 0;
        for (std::size_t i = 0; i < words_.size(); ++i) {
            if (i > 0) {
                out_.append(static_cast<std::size_t>(each + 1 + (rest > 0 ? 1 : 0)), ' ');
                rest -= rest > 0 ? 1 : 0;
            }
            out_ += words_[i];
        }
        out_ += '\n';
        words_.clear();
        used_ = 0;
    }

    std::string& out_;
    const WrapLayout& layout_;
    const std::int64_t avail_;
    bool indentNext_;
    std::int64_t used_ = 0;
    std::vector<std::string_view> words_;
};

}  // namespace

void appendWrapped(std::string& out, std::string_view text, const WrapLayout& layout) {
    LineWriter line(out, layout);
    for (std::size_t begin = text.find_first_not_of(' '); begin != std::string_view::npos;) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        line.add(text.substr(begin, end - begin));
        begin = text.find_first_not_of(' ', end);
    }
    line.finish();
}
