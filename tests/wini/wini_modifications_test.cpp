#include "wini/wini_modifications.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "fakes/fake_platform.h"

namespace {

TEST(WiniModificationsTest, ChangesNothingAheadOfTheSession) {
    FakePlatform machine;
    WiniModifications modifications(machine.bundle());
    EXPECT_THROW(modifications.registerApplication(), std::logic_error);
}

}  // namespace
