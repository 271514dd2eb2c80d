#pragma once

#include <cstdint>
#include <memory>

#include "platform/overlay/overlay_state.h"

// An open file of an overlay. It reads the base's file until something is written.
class OverlayFile : public platform::File {
public:
    // `baseFile` may be null: it is opened when it is needed. The state is borrowed.
    OverlayFile(OverlayState& state, OverlayNode::Pointer node, const platform::OpenOptions& options,
                std::unique_ptr<platform::File> baseFile);
    ~OverlayFile() override;

    // What an opening that creates does to the file that is there.
    void empty();

    int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int seek(std::int64_t distance, platform::Origin origin, std::int64_t& outPosition) override;
    std::int64_t size() override;
    int truncateHere() override;
    int flush() override;
    int setRights(platform::FileRights rights) override;
    int takeRightsOf(std::string_view path) override;
    int makeExecutable() override;
    int close() override;

private:
    int statusOf(std::uint32_t neededAccess) const;
    OverlayContent& ownContent();
    std::int64_t present() const;
    int readBase(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone);
    std::int64_t roomFor(std::int64_t end);
    void account();

    OverlayState& state_;
    OverlayNode::Pointer node_;  // null once closed
    std::uint32_t access_;
    std::uint32_t share_;
    std::unique_ptr<platform::File> baseFile_;
    std::int64_t basePosition_ = 0;
    std::int64_t position_ = 0;
};
