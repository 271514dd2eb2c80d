#include "platform/overlay/overlay_content.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace {

std::int64_t lengthOf(const std::string& text) {
    return static_cast<std::int64_t>(text.size());
}

std::int64_t endOf(const std::pair<const std::int64_t, std::string>& piece) {
    return piece.first + lengthOf(piece.second);
}

}  // namespace

OverlayContent::OverlayContent(ContentMemory& memory, std::int64_t baseSize)
    : memory_(memory), baseSize_(baseSize), size_(baseSize) {
    memory_.join(*this);
}

OverlayContent::~OverlayContent() {
    memory_.leave(*this);
    memory_.grow(-keptBytes_);
}

void OverlayContent::keep(std::int64_t bytes) {
    keptBytes_ += bytes;
    memory_.grow(bytes);  // may forget this content
}

int OverlayContent::read(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone,
                         const ReadBase& readBase) const {
    outDone = 0;
    const std::int64_t wanted = std::min<std::int64_t>(size, std::max<std::int64_t>(size_ - position, 0));
    while (outDone < wanted) {
        std::uint32_t done = 0;
        const int status = readPart(position + outDone, buffer + outDone,
                                    static_cast<std::uint32_t>(wanted - outDone), done, readBase);
        outDone += done;
        if (status != 0 || done == 0) {
            return status;
        }
    }
    return 0;
}

// Up to the next border between what was written, what is the base's, and nothing.
int OverlayContent::readPart(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone,
                             const ReadBase& readBase) const {
    auto next = written_.upper_bound(position);
    if (next != written_.begin() && endOf(*std::prev(next)) > position) {
        const auto& [start, text] = *std::prev(next);
        outDone = static_cast<std::uint32_t>(std::min<std::int64_t>(size, start + lengthOf(text) - position));
        std::memcpy(buffer, text.data() + (position - start), outDone);
        return 0;
    }
    std::int64_t length = size;
    if (next != written_.end()) {
        length = std::min(length, next->first - position);
    }
    if (position < baseSize_) {
        length = std::min(length, baseSize_ - position);
        return readBase(position, buffer, static_cast<std::uint32_t>(length), outDone);
    }
    outDone = static_cast<std::uint32_t>(length);
    std::memset(buffer, 0, outDone);
    return 0;
}

void OverlayContent::cutOut(std::int64_t begin, std::int64_t end) {
    auto at = written_.upper_bound(begin);
    if (at != written_.begin() && endOf(*std::prev(at)) > begin) {
        --at;
    }
    while (at != written_.end() && at->first < end) {
        const std::int64_t start = at->first;
        std::string text = std::move(at->second);
        const std::int64_t stop = start + lengthOf(text);
        at = written_.erase(at);
        keep(std::max(start, begin) - std::min(stop, end));
        if (stop > end) {
            at = written_.emplace(end, text.substr(static_cast<std::size_t>(end - start))).first;
        }
        if (start < begin) {
            text.resize(static_cast<std::size_t>(begin - start));
            written_.emplace(start, std::move(text));
        }
    }
}

void OverlayContent::write(std::int64_t position, const char* data, std::uint32_t size) {
    const std::int64_t end = position + size;
    size_ = std::max(size_, end);
    if (isForgotten_ || size == 0) {
        return;
    }
    auto before = written_.upper_bound(position);
    const bool continues = before != written_.begin() && endOf(*std::prev(before)) >= position;
    if (!continues) {
        cutOut(position, end);
        written_.emplace(position, std::string(data, size));
        keep(size);
        return;
    }
    // Most writes follow the one before, or correct a part of what was written.
    const auto piece = std::prev(before);
    const std::int64_t oldEnd = endOf(*piece);
    if (end > oldEnd) {
        cutOut(oldEnd, end);
        piece->second.resize(static_cast<std::size_t>(end - piece->first));
    }
    std::memcpy(piece->second.data() + (position - piece->first), data, size);
    keep(std::max<std::int64_t>(end - oldEnd, 0));
}

void OverlayContent::resize(std::int64_t size) {
    if (size < size_ && !isForgotten_) {
        cutOut(size, size_);
    }
    baseSize_ = std::min(baseSize_, size);
    size_ = size;
    isForgotten_ = isForgotten_ && size > 0;
}

void OverlayContent::forget() {
    written_.clear();
    isForgotten_ = true;
    memory_.grow(-std::exchange(keptBytes_, 0));
}
