#include "checking/made_directories.h"

#include "checking/check_bench.h"

namespace {

class MadeDirectoriesTest : public testing::Test {
protected:
    static constexpr std::string_view kValues =
        "<DefValues><Value Name='D' DataType='value'>/x/u</Value>"
        "<Value Name='E' DataType='envvar'>GREETER</Value>"
        "<Value Name='ASKED' DataType='value'>/y</Value></DefValues>"
        "<Dialogs><P><Field Type='Directory'>ASKED</Field></P></Dialogs>";

    enum class Fate { kMade, kMissing, kUnsure };
    Fate fateOf(const std::string& text, const std::string& sections, CheckTargets targets = {}) {
        Fate fate = Fate::kUnsure;
        CheckBench bench([&](const CheckedParts& parts) {
            const MadeDirectories made(parts.context, parts.files, parts.paths);
            EXPECT_FALSE(made.isMade(text) && made.isMissing(text)) << text;
            fate = made.isMade(text) ? Fate::kMade : made.isMissing(text) ? Fate::kMissing : Fate::kUnsure;
        });
        bench.targets = targets;
        bench.findings(std::string(kValues) + sections);
        return fate;
    }
    static std::string file(const std::string& dest) {
        return "<FileSet Name='S'><FN Dest='" + dest + "'>f</FN></FileSet>";
    }
};

TEST_F(MadeDirectoriesTest, AreThoseOfFilesTreesAndShortcutsAndAllAbove) {
    EXPECT_EQ(fateOf("/x/u", file("[D]/bin/y")), Fate::kMade);
    EXPECT_EQ(fateOf("/x/u/bin/y", file("[D]/bin/y")), Fate::kMade);
    EXPECT_EQ(fateOf("[ASKED]", file("[ASKED]/bin")), Fate::kMade);
    EXPECT_EQ(fateOf("[D]/t", "<FileSet Name='S'><Tree Dest='[D]/t' From='t'/></FileSet>"), Fate::kMade);
    EXPECT_EQ(fateOf("[D]/s", "<Shortcuts><Add Type='File' Dest='[D]/s'>s</Add></Shortcuts>"), Fate::kMade);
}

TEST_F(MadeDirectoriesTest, AreNoneThatAMachineMayHave) {
    EXPECT_EQ(fateOf("/opt", file("/opt/x")), Fate::kUnsure);
    EXPECT_EQ(fateOf("/", file("/opt/x")), Fate::kUnsure);
    EXPECT_EQ(fateOf("[E]", file("[E]/x")), Fate::kUnsure);
    EXPECT_EQ(fateOf("[$HOME]", file("[$HOME]/x")), Fate::kUnsure);
    EXPECT_EQ(fateOf("[E]/x", file("[E]/x")), Fate::kMade);
}

TEST_F(MadeDirectoriesTest, AreMissingWhereNothingGoesThere) {
    EXPECT_EQ(fateOf("[D]/log", file("[D]")), Fate::kMissing);
    EXPECT_EQ(fateOf("/log", file("[D]")), Fate::kMissing);
    EXPECT_EQ(fateOf("[ASKED]log", file("[ASKED]")), Fate::kMissing);
    EXPECT_EQ(fateOf("[E]/log", file("[D]")), Fate::kUnsure);
    EXPECT_EQ(fateOf("[E]/x/log", file("[E]/x")), Fate::kMissing);
    EXPECT_EQ(fateOf("[NONE]/log", file("[D]")), Fate::kUnsure);
}

TEST_F(MadeDirectoriesTest, AreNotMissingWhereTheyMayBeMade) {
    EXPECT_EQ(fateOf("[D]/log", file("[E]/log")), Fate::kUnsure);
    EXPECT_EQ(fateOf("[D]/log", file("[E]")), Fate::kMissing) << "no directory of the product's own";
    EXPECT_EQ(fateOf("[D]/log", file("[D]") + "<A><RunProgram>/x/p</RunProgram></A>"), Fate::kUnsure);
    EXPECT_EQ(fateOf("[D]/log", file("[D]") + "<FileSet Name='T'><Other/></FileSet>"), Fate::kUnsure);
    EXPECT_EQ(fateOf("", file("[D]")), Fate::kUnsure);
}

TEST_F(MadeDirectoriesTest, DifferByCaseOnLinuxAlone) {
    EXPECT_EQ(fateOf("/X/u", file("[D]")), Fate::kMissing);
    EXPECT_EQ(fateOf("/X/u", file("[D]"), {.windows = true, .linux = false}), Fate::kMade);
    EXPECT_EQ(fateOf("C:/X", file("c:/x")), Fate::kMade);
}

}  // namespace
