#include <dlfcn.h>

#include <gtest/gtest.h>

#include <stdexcept>

#ifdef DLFO_STRUCT_HAS_EH_DBASE

namespace {

void thrower() {
    throw std::runtime_error("thrown");
}

TEST(ExceptionTables, AreFoundForAFunctionOfTheProgram) {
    dl_find_object found{};
    ASSERT_EQ(_dl_find_object(reinterpret_cast<void*>(&thrower), &found), 0);
    EXPECT_NE(found.dlfo_eh_frame, nullptr);
    EXPECT_LE(found.dlfo_map_start, reinterpret_cast<void*>(&thrower));
    EXPECT_GT(found.dlfo_map_end, reinterpret_cast<void*>(&thrower));
    Dl_info owner{};
    ASSERT_NE(dladdr(found.dlfo_eh_frame, &owner), 0);
    Dl_info own{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&thrower), &own), 0);
    EXPECT_EQ(owner.dli_fbase, own.dli_fbase);
}

TEST(ExceptionTables, AreNotFoundForAnAddressOfNoObject) {
    dl_find_object found{};
    int local = 0;
    EXPECT_EQ(_dl_find_object(&local, &found), -1);
    EXPECT_EQ(_dl_find_object(nullptr, &found), -1);
}

TEST(ExceptionTables, LetAnExceptionReachItsHandler) {
    EXPECT_THROW(thrower(), std::runtime_error);
}

}  // namespace

#endif
