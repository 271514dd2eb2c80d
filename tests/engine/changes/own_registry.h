#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "fakes/temporary_directory.h"
#include "platform/environment.h"

// Where the registry is a file, the whole test program keeps to one of its own, so that the machine's stays
// as it is.
class OwnRegistry : public testing::Environment {
public:
    void SetUp() override {
        directory_ = std::make_unique<TemporaryDirectory>();
        ASSERT_TRUE(platform::systemEnvironment().set("TANDREL_STATE_DIR", directory_->path()));
    }
    void TearDown() override { directory_.reset(); }

private:
    std::unique_ptr<TemporaryDirectory> directory_;
};

[[maybe_unused]] inline const testing::Environment* const kOwnRegistry =
    testing::AddGlobalTestEnvironment(new OwnRegistry);
