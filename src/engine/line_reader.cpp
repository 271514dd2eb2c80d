#include "engine/line_reader.h"

#include <algorithm>
#include <cstring>

#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "support/p_stream.h"

namespace {

constexpr std::size_t kBlockSize = 65536;

}  // namespace

LineReader::LineReader(PStream& stream)
    : stream_(stream), block_(kBlockSize), blockPosition_(stream.getPosition()) {}

bool LineReader::fill() {
    blockPosition_ += static_cast<std::int64_t>(end_);
    next_ = 0;
    end_ = 0;
    std::uint32_t done = 0;
    if (stream_.read(block_.data(), static_cast<std::uint32_t>(block_.size()), done) != 0) {
        failed_ = true;
        return false;
    }
    end_ = done;
    return done > 0;
}

bool LineReader::readLine(std::string& outLine, std::size_t bufferSize) {
    outLine.clear();
    const std::size_t limit = bufferSize - 1;
    while (outLine.size() < limit) {
        if (next_ == end_ && !fill()) {
            break;
        }
        const std::size_t room = std::min(limit - outLine.size(), end_ - next_);
        const char* start = block_.data() + next_;
        const void* feed = std::memchr(start, '\n', room);
        const std::size_t length =
            feed == nullptr ? room : static_cast<std::size_t>(static_cast<const char*>(feed) - start) + 1;
        outLine.append(start, length);
        next_ += length;
        if (feed != nullptr) {
            break;
        }
    }
    if (failed_) {
        outLine.clear();
    }
    return !outLine.empty();
}

bool LineReader::moveTo(std::int64_t position) {
    next_ = 0;
    end_ = 0;
    blockPosition_ = position;
    failed_ = stream_.seek(position) != 0;
    return !failed_;
}

std::string_view withoutTrailingSpace(std::string_view text) {
    while (!text.empty() && OUtils::isWhiteSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool isLogRecord(std::string_view line, std::string_view tag) {
    return line.size() > tag.size() && line.starts_with(tag) &&
           line[tag.size()] == ActionLogFormat::kSeparator;
}

std::string_view firstLogField(std::string_view rest) {
    return rest.substr(0, rest.find(ActionLogFormat::kSeparator));
}

std::string_view nextLogField(std::string_view rest) {
    const std::size_t separator = rest.find(ActionLogFormat::kSeparator);
    if (separator == std::string_view::npos) {
        return {};
    }
    const std::size_t field = rest.find_first_not_of(ActionLogFormat::kSeparator, separator);
    return field == std::string_view::npos ? std::string_view() : rest.substr(field);
}
