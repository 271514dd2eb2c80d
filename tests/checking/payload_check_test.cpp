#include "checking/payload_check.h"

#include "checking/check_bench.h"

namespace {

class PayloadCheckTest : public testing::Test {
protected:
    PayloadCheckTest() { bench_.root = "/root/"; }
    void add(const std::string& path, const std::string& content = "x") {
        bench_.files.addFile("/root/" + path, content);
    }
    static std::string set(const std::string& files) { return "<FileSet Name='S'>" + files + "</FileSet>"; }

    CheckBench bench_{[](const CheckedParts& parts) { checkPayload(parts.context, parts.files); }};
};

TEST_F(PayloadCheckTest, CountsTheFilesThatNothingNamesAndNamesTheFirst) {
    for (const std::string name : {"a", "e", "c", "b", "sub/d"}) {
        add("bin/" + name);
    }
    const std::string files = set("<FN Dest='/x'>bin/A</FN>");
    EXPECT_EQ(bench_.find(files), (Found{"payload-unused 1:1"}));
    EXPECT_EQ(
        bench_.messages(files),
        (Found{"4 files among those of the product are in no FN: \"bin/b\", \"bin/c\", \"bin/e\", ..."}));
    EXPECT_EQ(bench_.messages(set("<FN>bin/a</FN><FN>bin/b</FN><FN>bin/c</FN><FN>bin\\e</FN>")),
              (Found{"1 file among those of the product is in no FN: \"bin/sub/d\""}));
}

TEST_F(PayloadCheckTest, LooksOnlyWhereFilesOfTheProductAre) {
    add("bin/a");
    add("work/notes");
    add("notes");
    EXPECT_EQ(bench_.find(set("<FN>bin/a</FN>")), Found());
    EXPECT_EQ(bench_.messages(set("<FN>bin/a</FN><FN>work/notes</FN><FN>notes</FN>")), Found());
    add("more");
    EXPECT_EQ(bench_.messages(set("<FN>bin/a</FN><FN>notes</FN>")),
              (Found{"1 file among those of the product is in no FN: \"more\""}));
}

TEST_F(PayloadCheckTest, LeavesTheDirectoryAloneInWhichSomebodyWorks) {
    add("bin/a");
    add("a");
    add("b");
    const std::string files = set("<FN>a</FN><FN>bin/a</FN>");
    EXPECT_EQ(bench_.find(files), (Found{"payload-unused 1:1"}));
    add("product.XML");
    EXPECT_EQ(bench_.find(files), Found());
    EXPECT_EQ(bench_.find(files + set("<FN>product.xml</FN>")), (Found{"payload-unused 1:1"}));
    add("install.xml");
    EXPECT_EQ(bench_.find(files + set("<FN>product.xml</FN><FN>install.xml</FN>")), Found());
    add("bin/b");
    EXPECT_EQ(bench_.find(files), (Found{"payload-unused 1:1"}));
}

TEST_F(PayloadCheckTest, LeavesHiddenFilesAlone) {
    add("a");
    add(".hidden");
    add(".git/config");
    EXPECT_EQ(bench_.find(set("<FN>a</FN>")), Found());
}

TEST_F(PayloadCheckTest, SaysNothingWithoutARootOrOfASetWithMoreInIt) {
    add("a");
    add("b");
    EXPECT_EQ(bench_.find(set("<FN>a</FN><Other/>")), Found());
    bench_.root.reset();
    EXPECT_EQ(bench_.find(set("<FN>a</FN>")), Found());
}

}  // namespace
