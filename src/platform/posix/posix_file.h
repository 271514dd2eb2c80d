#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/posix/system_calls.h"

namespace platform {

// An open file descriptor as a File; owns the descriptor.
class PosixFile : public File {
public:
    explicit PosixFile(int descriptor) : descriptor_(descriptor) {}

    int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int seek(std::int64_t distance, Origin origin, std::int64_t& outPosition) override;
    std::int64_t size() override;
    int truncateHere() override;
    int flush() override;
    int setRights(FileRights rights) override;
    int takeRightsOf(std::string_view path) override;
    int makeExecutable() override;
    int close() override { return descriptor_.close(); }

private:
    Descriptor descriptor_;
};

// As FileSystem::rightsOf.
std::string rightsOfFile(std::string_view path);

}  // namespace platform
