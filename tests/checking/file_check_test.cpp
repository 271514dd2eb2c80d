#include "checking/file_check.h"

#include "checking/check_bench.h"

namespace {

class FileCheckTest : public testing::Test {
protected:
    static std::string set(const std::string& files) { return "<FileSet Name='S'>" + files + "</FileSet>"; }

    CheckBench bench_{[](const CheckedParts& parts) { checkFiles(parts.context, parts.files, parts.paths); }};
};

TEST_F(FileCheckTest, FindsFilesOutsideTheRoot) {
    EXPECT_EQ(bench_.find(set("<FN Dest='/x'>../a</FN><FN Dest='/x'>C:/b</FN><FN Dest='/x'>a/./b..c</FN>")),
              (Found{"file-outside 2:33", "file-outside 2:56"}));
}

TEST_F(FileCheckTest, FindsFilesThatAreMissingBelowTheRoot) {
    const std::string files =
        set("<FN Dest='/x'>a</FN><FN Dest='/x'>b</FN><FN Dest='/x' OkIfMissing='1'>c</FN>"
            "<FN Dest='/x'>installer</FN><FN Dest='/x'>install.xml</FN>");
    EXPECT_EQ(bench_.find(files), Found());
    bench_.root = "/root";
    bench_.files.addFile("/root/a", "");
    EXPECT_EQ(bench_.find(files), (Found{"file-missing 2:53"}));
    EXPECT_EQ(bench_.messages(files), (Found{"there is no file \"b\" below the root"}));
}

TEST_F(FileCheckTest, FindsTwoFilesOfOneDestination) {
    EXPECT_EQ(bench_.find("<DefValues><Value Name='D' DataType='value'>/x</Value></DefValues>" +
                          set("<FN Dest='[D]'>a/f</FN>\n<FN Dest='/x/'>b/f</FN><FN Dest='/y'>b/f</FN>")),
              (Found{"file-same-destination 3:1"}));
    EXPECT_EQ(bench_.messages(set("<FN Dest='/x'>a/f</FN><FN Dest='/x'>b/f</FN>")),
              (Found{"\"b/f\" is installed in the place of \"a/f\""}));
}

TEST_F(FileCheckTest, LetsTheCaseOfNamesDistinguishFilesOnLinuxAlone) {
    const std::string files = set("<FN Dest='/x'>a/f</FN><FN Dest='/X'>b/F</FN>");
    EXPECT_EQ(bench_.find(files), (Found{"file-same-destination 2:41"}));
    bench_.targets.windows = false;
    EXPECT_EQ(bench_.find(files), Found());
}

TEST_F(FileCheckTest, TakesDifferentConditionsForThoseThatExcludeEachOther) {
    EXPECT_EQ(bench_.find(set("<FN Dest='/x'>a/f</FN><FN Dest='/x' Condition='[A]==1'>b/f</FN>"
                              "<FN Dest='/x' Condition='[A]==2'>c/f</FN>") +
                          "<FileSet Name='T' Condition='[A]==3'><FN Dest='/x'>d/f</FN></FileSet>"),
              Found());
    EXPECT_EQ(bench_.find(
                  set("<FN Dest='/x' Condition='[A]==1'>b/f</FN><FN Dest='/x' Condition='[A]==1'>c/f</FN>")),
              (Found{"file-same-destination 2:60"}));
    EXPECT_EQ(
        bench_.find(set("<FN Dest='/x' OkIfMissing='1'>a/f</FN><FN Dest='/x' OkIfMissing='1'>b/f</FN>")),
        Found());
}

TEST_F(FileCheckTest, FindsFilesThatAreNotExpandedOrCut) {
    const std::string files =
        set("<FN Dest='/x' ExpandVarsInFile='1'>large</FN>\n<FN Dest='/x' ExpandVarsInFile='1'>zero</FN>\n"
            "<FN Dest='/x' ExpandVarsInFile='1'>text</FN>\n<FN Dest='/x'>plain</FN>");
    EXPECT_EQ(bench_.find(files), Found());
    bench_.root = "/root";
    bench_.files.addFile("/root/large", std::string(8192, 'x'));
    bench_.files.addFile("/root/zero", std::string("a\0b", 3));
    bench_.files.addFile("/root/text", std::string(8191, 'x'));
    bench_.files.addFile("/root/plain", std::string(8192, '\0'));
    EXPECT_EQ(bench_.find(files), (Found{"file-not-expanded 2:51", "file-not-expanded 3:33"}));
}

}  // namespace
