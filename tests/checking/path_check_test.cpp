#include "checking/path_check.h"

#include "checking/check_bench.h"

namespace {

class PathCheckTest : public testing::Test {
protected:
    static std::string set(const std::string& files) { return "<FileSet Name='S'>" + files + "</FileSet>"; }
    static std::string cleanup(const std::string& directory) {
        return "<UninstallWildcards><P Dest='" + directory + "'>*.tmp</P></UninstallWildcards>";
    }

    CheckBench bench_{[](const CheckedParts& parts) { checkPaths(parts.context, parts.files, parts.paths); }};
    // The directories of a system are the subject of some tests alone.
    void checkLinuxAlone() { bench_.targets.windows = false; }
};

TEST_F(PathCheckTest, FindsRelativePaths) {
    EXPECT_EQ(bench_.find("<DefValues><Value Name='APP' DataType='value'>app</Value></DefValues>\n" +
                          set("<FN Dest='bin'>a</FN><FN Dest='[APP]/bin'>b</FN><FN Dest='C:bin'>c</FN>\n"
                              "<FN Dest='[OTHER]/bin'>d</FN><FN Dest='[$HOME]'>e</FN>")),
              (Found{"path-relative 3:29", "path-relative 3:50", "path-relative 3:77"}));
    EXPECT_EQ(bench_.messages(set("<FN Dest='bin'>a</FN>")), (Found{"\"bin\" is a relative path"}));
    EXPECT_EQ(bench_.find(set("\n<FN Dest='[MY DIR]/bin'>a</FN>")), (Found{"path-relative 3:11"}));
}

TEST_F(PathCheckTest, LooksAtTheDirectoriesOfTrees) {
    EXPECT_EQ(bench_.find(set("\n<Tree From='a' Dest='bin'/>\n<Tree From='a' Dest='[TEMP_DIR]'/>")),
              (Found{"path-relative 3:22", "path-dangerous 4:22"}));
}

TEST_F(PathCheckTest, TakesAVariableForAbsoluteThatMayBeIt) {
    EXPECT_EQ(bench_.find("<DefValues><Value Name='D' DataType='value' Condition='1==1'>x</Value>"
                          "<Value Name='D' DataType='value' Condition='1==2'>/x</Value>"
                          "<Value Name='F' DataType='value'>x</Value></DefValues>"
                          "<Dialogs><P><Field Type='Directory'>F</Field></P></Dialogs>" +
                          set("<FN Dest='[D]'>a</FN><FN Dest='[F]'>b</FN>")),
              Found());
}

TEST_F(PathCheckTest, FindsRelativePathsOfRecordsShortcutsAndCleanUps) {
    EXPECT_EQ(bench_.find("<Installation><Uninstall><InstallLogFile>a.log</InstallLogFile></Uninstall>\n"
                          "<Shortcuts><Add Type='File' Dest='menu' Target='/x'>a</Add></Shortcuts>\n" +
                          cleanup("cache") + "</Installation>"),
              (Found{"path-relative 2:42", "path-relative 3:35", "path-relative 4:30"}));
}

TEST_F(PathCheckTest, FindsCharactersThatNoRecordCanHold) {
    const std::string asked =
        "<DefValues><Value Name='D' DataType='value'>/a\nb</Value></DefValues>"
        "<Dialogs><P><Field Type='Directory'>D</Field></P></Dialogs>\n";
    bench_.targets.windows = false;
    EXPECT_EQ(bench_.find(asked + set("<FN Dest='[D]/bin'>a</FN>")), (Found{"path-character 4:29"}));
    EXPECT_EQ(bench_.find(set("\n<FN Dest='/x '>a</FN>")), (Found{"path-character 3:11"}));
    EXPECT_EQ(bench_.find(set("\n<FN Dest='/x/\"/bin'>a</FN>")), Found());
    EXPECT_EQ(bench_.find("<Installation><Uninstall>\n<InstallLogFile>/x/\"/a.log</InstallLogFile>"
                          "</Uninstall></Installation>"),
              (Found{"path-character 3:17"}));
}

TEST_F(PathCheckTest, FindsEmptyDirectories) {
    EXPECT_EQ(bench_.find("<DefValues><Value Name='E' DataType='value'></Value></DefValues>\n" +
                          set("<FN Dest=''>a</FN><FN Dest='[E]'>b</FN><FN>c</FN>")),
              (Found{"path-empty 3:29", "path-empty 3:47"}));
}

TEST_F(PathCheckTest, FindsDirectoriesThatAreNoPlaceForAProduct) {
    checkLinuxAlone();
    EXPECT_EQ(bench_.find(set("<FN Dest='/'>a</FN><FN Dest='[TEMP_DIR]/'>b</FN><FN Dest='/usr/'>c</FN>"
                              "<FN Dest='/usr/bin'>d</FN><FN Dest='/etc'>e</FN>") +
                          "\n<Installation><Uninstall><InstallLogFile>/a.log</InstallLogFile>"
                          "<InstallBackupFile>[TEMP_DIR]\\b</InstallBackupFile></Uninstall></Installation>"),
              (Found{"path-dangerous 2:29", "path-dangerous 2:48", "path-dangerous 2:77",
                     "path-dangerous 3:42", "path-dangerous 3:84"}));
}

TEST_F(PathCheckTest, FindsCleanUpsWhereOthersHaveFiles) {
    checkLinuxAlone();
    for (const std::string directory : {"/", "/etc", "/usr/bin", "[TEMP_DIR]", "[$HOME]"}) {
        EXPECT_EQ(bench_.find(cleanup(directory)), (Found{"path-dangerous 2:30"})) << directory;
    }
    for (const std::string directory : {"/opt/x", "[D]", "[TEMP_DIR]/x", "[$HOME]/.x"}) {
        EXPECT_EQ(bench_.find(cleanup(directory)), Found()) << directory;
    }
}

TEST_F(PathCheckTest, FindsPathsOfOneSystemInADescriptionForBoth) {
    const std::string files =
        set("<FN Dest='C:/x'>a</FN><FN Dest='/opt/x'>b</FN><FN Dest='//s/s/x'>c</FN>"
            "<FN Dest='/opt/y' Condition='[A]==1'>d</FN>");
    EXPECT_EQ(bench_.find(files), (Found{"path-system 2:29", "path-system 2:51"}));
    bench_.targets.linux = false;
    EXPECT_EQ(bench_.find(files), (Found{"path-system 2:51", "path-system 2:100"}));
    bench_.targets = {.windows = false, .linux = true};
    EXPECT_EQ(bench_.find(files), (Found{"path-system 2:29"}));
}

}  // namespace
