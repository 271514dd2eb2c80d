#pragma once

#include <algorithm>
#include <string>

#include "fakes/fake_system_operations.h"
#include "support/utilities.h"

// The fake system on a file system: numbered temporary names, real copies, programs that take their time to
// end.
class InstallingSystem : public FakeSystemOperations {
public:
    explicit InstallingSystem(platform::FileSystem& files) : files_(files) {}

    int temporaryNamesLeft = 1000;  // afterwards the system refuses
    int looksBeforeEnd = 0;         // so many looks still find a closed program
    std::uint32_t slept = 0;        // milliseconds

    std::optional<std::string> temporaryFileName() override {
        if (temporaryNamesLeft-- <= 0) {
            return std::nullopt;
        }
        return "/tmp/orinstall" + std::to_string(++names_);
    }
    bool isProgramRunning(std::string_view path) override {
        const bool ends = ending_ == path && looksBeforeEnd-- > 0;
        return ends || FakeSystemOperations::isProgramRunning(path);
    }
    bool closeProgram(std::string_view path) override {
        ending_ = path;
        return FakeSystemOperations::closeProgram(path);
    }
    bool copyFile(std::string_view from, std::string_view to) override {
        return OUtils::copyFile(from, to, files_);
    }
    void sleepMilliseconds(std::uint32_t milliseconds) override { slept += milliseconds; }

private:
    platform::FileSystem& files_;
    std::string ending_;
    int names_ = 0;
};
