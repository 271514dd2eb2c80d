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

    int temporaryNamesLeft = 1000;     // afterwards the system refuses
    bool closingNeedsService = false;  // a program only ends when it is taken for a service
    int looksBeforeEnd = 0;            // so many looks still find a closed program
    std::uint32_t slept = 0;           // milliseconds

    int getTemporaryFileName(char* buffer, int size) override {
        const bool hasName = temporaryNamesLeft-- > 0;
        const std::string name = hasName ? "/tmp/orinstall" + std::to_string(++names_) : "";
        OUtils::copyText(buffer, name.c_str(), size);
        return hasName ? 0 : -1;
    }
    bool isApplicationRunning(const char* name, const char* directory) override {
        const bool ends = ending_ == name && looksBeforeEnd-- > 0;
        return ends || FakeSystemOperations::isApplicationRunning(name, directory);
    }
    bool closeApplication(const char* name, bool isService, const char* directory) override {
        if (closingNeedsService && !isService) {
            calls.push_back("closeApplication(" + std::string(name) + ") in vain");
            return false;
        }
        ending_ = name;
        return FakeSystemOperations::closeApplication(name, isService, directory);
    }
    bool copyFile(const char* from, const char* to) override { return OUtils::copyFile(from, to, files_); }
    void sleepMilliseconds(std::uint32_t milliseconds) override { slept += milliseconds; }

private:
    platform::FileSystem& files_;
    std::string ending_;
    int names_ = 0;
};
