#include "checking/icon_check.h"

#include "checking/check_bench.h"
#include "checking/icon_bytes.h"

namespace {

class IconCheckTest : public testing::Test {
protected:
    IconCheckTest() {
        bench_.root = "/root";
        bench_.files.addFile("/root/whole.ico", IconBytes::wholeIcon());
        bench_.files.addFile("/root/small.png", IconBytes::png(32, 32));
        bench_.files.addFile("/root/bad.ico", "GIF89a");
        bench_.files.addFile("/root/huge.ico", std::string(1024 * 1024 + 1, '\0'));
    }
    std::vector<std::string> messagesFor(const std::string& name) {
        return bench_.messages(sectionsWith(name));
    }
    static std::string sectionsWith(const std::string& name) {
        return "<ProductDesc><Icon>I</Icon></ProductDesc><FileSet Name='S'><FN Alias='I'>" + name +
               "</FN></FileSet>";
    }

    CheckBench bench_{[](const CheckedParts& parts) { checkIcon(parts.context, parts.files); }};
};

TEST_F(IconCheckTest, IsContentWithAllSizes) {
    EXPECT_EQ(bench_.find(sectionsWith("whole.ico")), Found());
}

TEST_F(IconCheckTest, FindsAnIconThatCanNotBeRead) {
    EXPECT_EQ(bench_.find(sectionsWith("bad.ico")), (Found{"icon-unreadable 2:20"}));
    EXPECT_EQ(messagesFor("bad.ico"), (Found{"\"bad.ico\" is neither a file of icons (ICO) nor a PNG"}));
    EXPECT_EQ(messagesFor("huge.ico"), (Found{"\"huge.ico\" has more than 1 MiB"}));
}

TEST_F(IconCheckTest, NamesTheSizesThatAreMissing) {
    EXPECT_EQ(bench_.find(sectionsWith("small.png")), (Found{"icon-sizes 2:20"}));
    EXPECT_EQ(messagesFor("small.png"),
              (Found{"\"small.png\" has no picture with sides of 16, 48, 256 pixels"}));
}

TEST_F(IconCheckTest, SaysNothingWithoutAFileOrASetupForWindows) {
    EXPECT_EQ(bench_.find(sectionsWith("none.ico")), Found());
    EXPECT_EQ(bench_.find("<ProductDesc><Icon>other</Icon></ProductDesc>"), Found());
    bench_.targets.windows = false;
    EXPECT_EQ(bench_.find(sectionsWith("bad.ico")), Found());
}

}  // namespace
