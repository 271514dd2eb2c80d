#include "platform/memory_library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

namespace {

// The mathematics library of this machine, which needs no other but the C library.
std::string someLibrary() {
    Dl_info info{};
    double (*const function)(double) = std::cos;
    void* const handle = dlopen("libm.so.6", RTLD_NOW);
    void* const address = handle == nullptr ? reinterpret_cast<void*>(function) : dlsym(handle, "cos");
    std::ostringstream content;
    if (dladdr(address, &info) != 0) {
        content << std::ifstream(info.dli_fname, std::ios::binary).rdbuf();
    }
    return content.str();
}

TEST(MemoryLibraryOnPosix, FindsAFunctionOfALibraryThatIsInNoFile) {
    std::string reason;
    void* const function = platform::loadMemoryLibrary(someLibrary(), "floor", reason);
    ASSERT_NE(function, nullptr) << reason;
    EXPECT_EQ(reinterpret_cast<double (*)(double)>(function)(2.5), 2.0);
}

TEST(MemoryLibraryOnPosix, NamesAFunctionThatIsMissing) {
    std::string reason;
    EXPECT_EQ(platform::loadMemoryLibrary(someLibrary(), "noSuchFunction", reason), nullptr);
    EXPECT_NE(reason.find("noSuchFunction"), std::string::npos) << reason;
    EXPECT_EQ(reason.find("/proc/"), std::string::npos) << reason;
}

}  // namespace
