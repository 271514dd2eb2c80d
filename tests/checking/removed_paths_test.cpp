#include "checking/removed_paths.h"

#include "checking/check_bench.h"

namespace {

bool isRemoved(const std::string& sections, const std::string& path) {
    bool result = false;
    CheckBench bench([&](const CheckedParts& parts) {
        result = RemovedPaths(parts.context, parts.paths).mayContain(parts.paths.resolve(path));
    });
    bench.findings(sections);
    return result;
}

std::string patterns(const std::string& elements) {
    return "<UninstallWildcards>" + elements + "</UninstallWildcards>";
}

TEST(RemovedPaths, AreThoseOfPatternsInAllDirectoriesBelow) {
    const std::string sections = patterns("<P Dest='/x'>*.tmp</P>");
    EXPECT_TRUE(isRemoved(sections, "/x/a.TMP"));
    EXPECT_TRUE(isRemoved(sections, "/x/y/z/a.tmp"));
    EXPECT_FALSE(isRemoved(sections, "/x/a.txt"));
    EXPECT_FALSE(isRemoved(sections, "/xy/a.tmp"));
    EXPECT_FALSE(isRemoved(sections, "/a.tmp"));
}

TEST(RemovedPaths, AreThoseOfActions) {
    const std::string action = "<RemoveFile>/x/a</RemoveFile>";
    EXPECT_TRUE(isRemoved("<PreUninstall>" + action + "</PreUninstall>", "/x/a"));
    EXPECT_FALSE(isRemoved("<PreUninstall>" + action + "</PreUninstall>", "/x/b"));
}

TEST(RemovedPaths, MayBeAnyWhereAProgramRuns) {
    const std::string program = "<RunProgram>/x/clean</RunProgram>";
    EXPECT_TRUE(isRemoved("<PreUninstall>" + program + "</PreUninstall>", "/a"));
    EXPECT_FALSE(isRemoved("<AdditionalInstall>" + program + "</AdditionalInstall>", "/a"));
}

TEST(RemovedPaths, MayBeAnyThatOnlyARunKnows) {
    EXPECT_TRUE(isRemoved(patterns("<P Dest='[A]'>*.tmp</P>"), "[B]/a.tmp"));
    EXPECT_TRUE(isRemoved(patterns("<P Dest='/x'>*.tmp</P>"), "/x/[B]"));
    EXPECT_FALSE(isRemoved(patterns("<P Dest='[A]'>*.tmp</P>"), "[B]/a.txt"));
    EXPECT_FALSE(isRemoved(patterns("<P Dest='[A]/x'>*.tmp</P>"), "[A]/y/a.tmp"));
}

TEST(DirectoryOf, EndsBeforeTheLastSeparator) {
    EXPECT_EQ(directoryOf("/a/b"), "/a");
    EXPECT_EQ(directoryOf("/a"), "/");
    EXPECT_EQ(directoryOf("a"), "");
}

TEST(IsMeantToBeUninstalled, WithPagesOrAProgramForIt) {
    bool isMeant = false;
    CheckBench bench([&](const CheckedParts& parts) { isMeant = isMeantToBeUninstalled(parts.context); });
    bench.findings("<UninstallDialogs><Finish/></UninstallDialogs>");
    EXPECT_TRUE(isMeant);
    bench.findings("<Installation><Uninstall><UninstallCmd>/x</UninstallCmd></Uninstall></Installation>");
    EXPECT_TRUE(isMeant);
    bench.findings("<Installation/>");
    EXPECT_FALSE(isMeant);
}

}  // namespace
