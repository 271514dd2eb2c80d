#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "platform/overlay/content_memory.h"

// The content of a changed file: what was written, over what the base's file holds. Only what was written
// is in memory, and not even that once it is forgotten: then the size is known and nothing else. For one
// thread.
class OverlayContent : public KeptContent {
public:
    // Reads the base's file at a position; as platform::File::read.
    using ReadBase =
        std::function<int(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone)>;

    // `baseSize` bytes come from the base; 0 for a new file. The memory is borrowed.
    OverlayContent(ContentMemory& memory, std::int64_t baseSize);
    ~OverlayContent() override;
    OverlayContent(const OverlayContent&) = delete;
    OverlayContent& operator=(const OverlayContent&) = delete;

    std::int64_t size() const { return size_; }
    bool isForgotten() const { return isForgotten_; }
    std::int64_t keptBytes() const override { return keptBytes_; }

    // Content that isn't forgotten. What was neither written nor is the base's reads as zeros. 0, or the
    // status of the base; `outDone` gets the bytes read, fewer than asked for at the end.
    int read(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone,
             const ReadBase& readBase) const;
    void write(std::int64_t position, const char* data, std::uint32_t size);
    // Cuts the file, or lengthens it with zeros. Forgotten content that is cut to nothing is known again.
    void resize(std::int64_t size);
    void forget() override;

private:
    void keep(std::int64_t bytes);
    void cutOut(std::int64_t begin, std::int64_t end);
    int readPart(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone,
                 const ReadBase& readBase) const;

    ContentMemory& memory_;
    std::map<std::int64_t, std::string> written_;  // by position; they neither touch nor overlap
    std::int64_t baseSize_;                        // of the base's file, so much still counts
    std::int64_t size_;
    std::int64_t keptBytes_ = 0;
    bool isForgotten_ = false;
};
