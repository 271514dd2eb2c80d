#include "checking/shared_directories.h"

#include "checking/check_bench.h"

namespace {

// Whether it is no place for files, and whether it is shared.
std::string kindOf(const std::string& text) {
    std::string kind;
    CheckBench bench([&](const CheckedParts& parts) {
        const std::string path = parts.paths.resolve(text);
        kind = isNoPlaceForFiles(path, parts.paths)   ? "no place"
               : isSharedDirectory(path, parts.paths) ? "shared"
                                                      : "own";
    });
    bench.findings(
        "<DefValues><Value Name='WINDOWS' DataType='envvar'>SystemRoot</Value>"
        "<Value Name='DIR' DataType='value'>/opt/x</Value></DefValues>");
    return kind;
}

TEST(SharedDirectories, KnowRoots) {
    for (const std::string root : {"/", "\\", "C:", "C:/", "c:\\", "//server/share"}) {
        EXPECT_EQ(kindOf(root), "no place") << root;
    }
    EXPECT_TRUE(isRootPath("/"));
    EXPECT_TRUE(isRootPath("c:"));
    EXPECT_FALSE(isRootPath("//server/share/x"));
    EXPECT_FALSE(isRootPath("/x"));
    EXPECT_FALSE(isRootPath(""));
}

TEST(SharedDirectories, KnowDirectoriesOfTheSystem) {
    for (const std::string path : {"/usr", "/tmp/", "C:/Windows", "d:/program files", "[TEMP_DIR]",
                                   "[WINDOWS]", "[WINDOWS]/System32", "[$ProgramFiles]"}) {
        EXPECT_EQ(kindOf(path), "no place") << path;
    }
}

TEST(SharedDirectories, KnowDirectoriesForEverybodysFiles) {
    for (const std::string path : {"/etc", "/opt", "/usr/bin", "/usr/local/bin", "[$HOME]", "[$AppData]"}) {
        EXPECT_EQ(kindOf(path), "shared") << path;
    }
}

TEST(SharedDirectories, LeaveDirectoriesOfAProductAlone) {
    for (const std::string path :
         {"/opt/x", "[DIR]", "[UNKNOWN]", "[$HOME]/.x", "C:/Windows/x", "/etc/x", ""}) {
        EXPECT_EQ(kindOf(path), "own") << path;
    }
}

}  // namespace
