#include "base/errors.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(GenericErrorTest, FormatsItsMessage) {
    const GenericError error("%s failed with %i", "open", 5);
    EXPECT_STREQ("open failed with 5", error.what());
}

TEST(GenericErrorTest, KeepsTheLongestMessageWhole) {
    const std::string text(4095, 'x');
    EXPECT_EQ(text, GenericError("%s", text.c_str()).what());
}

TEST(GenericErrorTest, CutsALongerMessageAndTerminatesIt) {
    const std::string text(5000, 'x');
    EXPECT_EQ(std::string(4095, 'x'), GenericError("%s", text.c_str()).what());
    EXPECT_EQ(std::string(4095, 'x'), InstallerError("%s", text.c_str()).what());
    EXPECT_EQ(std::string(4095, 'x'), NonFatalError("%s", text.c_str()).what());
}

TEST(GenericErrorTest, IsCaughtByReferenceToTheBaseWithItsText) {
    const auto caught = [](auto&& thrown) -> std::string {
        try {
            throw thrown;
        } catch (const GenericError& error) {
            return error.what();
        }
    };
    EXPECT_EQ("one", caught(InstallerError("%s", "one")));
    EXPECT_EQ("two", caught(NonFatalError("%s", "two")));
}

TEST(GenericErrorTest, FatalAndNonFatalAreDifferentKinds) {
    bool fatal = false;
    try {
        throw NonFatalError("step");
    } catch (const InstallerError&) {
        fatal = true;
    } catch (const NonFatalError& error) {
        EXPECT_STREQ("step", error.what());
    }
    EXPECT_FALSE(fatal);
}

TEST(GenericErrorTest, CopiesOwnTheirText) {
    GenericError second("second");
    {
        const GenericError first("first");
        second = first;
    }
    EXPECT_STREQ("first", second.what());
}

TEST(ExceptionMsgTest, CutsAtItsSmallerBuffer) {
    const std::string text(2000, 'y');
    EXPECT_EQ(std::string(1023, 'y'), OUtils::ExceptionMsg("%s", text.c_str()).what());
    EXPECT_STREQ("code 7", OUtils::ExceptionMsg("code %i", 7).what());
}

}  // namespace
