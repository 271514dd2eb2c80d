#include "engine/log_head.h"

#include <algorithm>
#include <charconv>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/change_table.h"
#include "engine/line_reader.h"
#include "support/p_stream.h"

namespace {

namespace Format = ActionLogFormat;

bool isRecord(std::string_view line) {
    return std::ranges::any_of(changeKinds(), [&](const ChangeKind& kind) {
        const std::string_view tag = kind.tagOf(line);
        return !tag.empty() && isLogRecord(line, tag);
    });
}

// The number after the tag of the count; nothing when it is none, or less than 0.
std::optional<std::uint64_t> countIn(std::string_view line) {
    if (!isLogRecord(line, Format::kVariableCount)) {
        return std::nullopt;
    }
    const std::string_view digits = withoutTrailingSpace(line.substr(Format::kVariableCount.size() + 1));
    std::uint64_t count = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    const bool isNumber = error == std::errc() && end == digits.data() + digits.size();
    return isNumber ? std::optional(count) : std::nullopt;
}

// Reads a log line by line until its head is over.
class HeadReader {
public:
    // False for the line that isn't part of the head any more: the first record, and after as many variables
    // as are counted whatever isn't one.
    bool take(std::string_view line) {
        const bool isVariable = isLogRecord(line, Format::kVariable) && line.ends_with('\n');
        if (isRecord(line) || (isSound() && !isVariable)) {
            return false;
        }
        if (const auto count = countIn(line); count && !count_) {
            count_ = count;
        } else if (isVariable) {
            ++taken_;
            takeVariable(withoutTrailingSpace(line));
        }
        return true;
    }
    bool isSound() const { return count_ == taken_; }
    LogHead& head() { return head_; }

private:
    void takeVariable(std::string_view line) {
        const std::string_view name = nextLogField(line);
        if (!name.empty()) {
            head_.variables[OUtils::toLowerAscii(firstLogField(name))] = firstLogField(nextLogField(name));
        }
    }

    LogHead head_;
    std::optional<std::uint64_t> count_;
    std::uint64_t taken_ = 0;
};

}  // namespace

// A value with a line feed in it takes more than one line, so what is neither a variable nor a record is
// passed over.
LogHead readLogHead(PStream& log) {
    LineReader lines(log);
    HeadReader reader;
    std::string line;
    if (!lines.rewind()) {
        return {};
    }
    std::int64_t start = 0;
    while (lines.readLine(line, Format::kRecordLineBuffer) && reader.take(line)) {
        start = lines.position();
    }
    reader.head().recordsStart = start;
    reader.head().isSound = reader.isSound();
    return std::move(reader.head());
}

std::optional<VariableReading> LoggedValues::read(std::string_view name, std::size_t limit) {
    std::optional<VariableReading> found = session_.read(name, limit);
    if (found && !found->isStored()) {
        return found;
    }
    const auto logged = head_.variables.find(OUtils::toLowerAscii(name));
    if (logged == head_.variables.end()) {
        return std::nullopt;
    }
    return VariableReading{logged->second.substr(0, limit), found ? found->index : 0};
}
