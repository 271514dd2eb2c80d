#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/platform.h"
#include "platform/processes.h"

// Tests on the machine itself, with the helpers that they need: parts of this test program that run as
// programs of their own, as its disabled tests "WiniChild.DISABLED_...". Where the registry is a file, the
// whole test program and its children keep to one of their own.
class MachineTest : public testing::Test {
public:
    static constexpr std::uint32_t kLongEnough = 60000;  // ms; only a broken system takes so long

    static std::string ownImage();
    static std::string argumentsOf(const std::string& childTest);
    // A whole command line.
    static std::string commandOf(const std::string& childTest, const std::string& image = ownImage());
    static std::unique_ptr<platform::ChildProcess> startChild(const std::string& childTest,
                                                              const std::string& image);
    // A program file with what this one holds.
    static void copyOwnImage(const std::string& to);

protected:
    platform::Platform machine_ = platform::systemPlatform();
};

// While it exists, a child that is started and asked for nothing in particular writes the file and ends: what
// a service does that is started with "-stop".
class StoppingService {
public:
    explicit StoppingService(const std::string& markFile);
    ~StoppingService();
    StoppingService(const StoppingService&) = delete;
    StoppingService& operator=(const StoppingService&) = delete;
};
