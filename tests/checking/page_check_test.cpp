#include "checking/page_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/check_bench.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> findIn(const std::string& sections) {
    return CheckBench([](const CheckedParts& parts) { checkPages(parts.context); }).find(sections);
}

// In line 2, with all sections that a product needs in line 3.
std::vector<std::string> findOn(const std::string& pages) {
    return findIn("<Dialogs>" + pages + "<CopyProgress/><Finish Special='Finish'/></Dialogs>\n" +
                  "<ProductDesc><Fullname>P</Fullname></ProductDesc><DefValues/>");
}

TEST(PageCheck, FindsNothingInAWalkThatIsComplete) {
    EXPECT_THAT(findOn("<Welcome/>"), IsEmpty());
}

TEST(PageCheck, FindsSectionsAndStepsThatAreMissing) {
    EXPECT_THAT(findIn("<DefValues/>"), ElementsAre("element-missing 1:1", "element-missing 1:1"));
    EXPECT_THAT(
        findIn("<ProductDesc><Fullname>P</Fullname></ProductDesc><DefValues/>\n<Dialogs><A/></Dialogs>"),
        ElementsAre("page-no-copy 3:1", "page-no-finish 3:1"));
}

TEST(PageCheck, FindsNamesThatDoNothing) {
    EXPECT_THAT(findOn("<copyprogress/>"), ElementsAre("page-name-case 2:10"));
    EXPECT_THAT(findOn("<RuningApps/>"), ElementsAre("page-name-near 2:10"));
    EXPECT_THAT(findOn("<Summary/><Settings/>"), IsEmpty());
    EXPECT_THAT(findOn("<P><TestApp>a</TestApp></P>"), ElementsAre("element-misplaced 2:13"));
}

TEST(PageCheck, FindsPagesThatAreNeverSeenOrLeft) {
    EXPECT_THAT(findOn("<A/><P Condition='1==0'/>"), ElementsAre("page-unreachable 2:28"));
    EXPECT_THAT(findOn("<Finish Special='Finish'/>"),
                ElementsAre("page-unreachable 2:36", "page-unreachable 2:51"));
    EXPECT_THAT(findOn("<P><Button Name='Next' x='1' y='1'>n</Button></P>"),
                ElementsAre("page-no-way-on 2:59", "page-no-way-on 2:74"));
    EXPECT_THAT(findOn("<RunningApps Special='Automated'/>"), ElementsAre("page-waits 2:32"));
}

TEST(PageCheck, FindsAConditionThatTheFirstPageIgnores) {
    EXPECT_THAT(findOn("<P Condition='1==0'/>"), ElementsAre("page-first-condition 2:24"));
    EXPECT_THAT(findOn("<P Condition='[A]==1'/>"), ElementsAre("page-first-condition 2:24"));
    EXPECT_THAT(findOn("<P Condition=''/><Q Condition='[A]==1'/>"), IsEmpty());
    EXPECT_THAT(findOn("<M Special='HasSubDialogs'><TaskList><A/></TaskList><SubDialogs>"
                       "<A Condition='[A]==1'/></SubDialogs></M>"),
                IsEmpty())
        << "a way back heeds it";
    EXPECT_THAT(findIn("<UninstallDialogs><P Condition='[A]==1'/><CopyProgress/><Finish Special='Finish'/>"
                       "</UninstallDialogs>"),
                Contains("page-first-condition 2:33"));
}

TEST(PageCheck, ComparesTasksWithPages) {
    EXPECT_THAT(
        findOn("<M Special='HasSubDialogs'><TaskList><A/></TaskList><SubDialogs><A/></SubDialogs></M>"),
        IsEmpty());
    EXPECT_THAT(
        findOn("<M Special='HasSubDialogs'><TaskList><B/></TaskList><SubDialogs><A/></SubDialogs></M>"),
        ElementsAre("task-without-page 2:47", "page-without-task 2:74"));
    EXPECT_THAT(findOn("<M Special='HasSubDialogs'><TaskList/></M>"), ElementsAre("frame-incomplete 2:10"));
    EXPECT_THAT(findOn("<M><SubDialogs/></M>"), ElementsAre("frame-special 2:10"));
}

TEST(PageCheck, FindsContainersThatNothingRunsAndOnesThatAreNotThere) {
    EXPECT_THAT(findOn("<P><Trigger EvaluateOn='End' Type='RunActions' Value='Work'/></P>"),
                ElementsAre("container-unknown 2:64"));
    EXPECT_THAT(findIn("<Installation><Work><RemoveFile>/a</RemoveFile></Work></Installation>"),
                Contains("container-unused 2:15"));
    EXPECT_THAT(findOn("<P><Trigger EvaluateOn='End' Type='VarChange' Variable='A'/></P>"),
                ElementsAre("trigger-incomplete 2:13"));
}

TEST(PageCheck, KnowsWhatARegistrationNeeds) {
    const std::vector<std::string> found = findOn("<RegisterApplication/>");
    EXPECT_EQ(std::ranges::count(found, "page-incomplete 2:10"), 6) << "all but Fullname";
}

TEST(PageCheck, FindsTheEndOfAnInstallationBeforeItsFiles) {
    const auto found = [](const std::string& pages) { return findIn("<Dialogs>" + pages + "</Dialogs>"); };
    EXPECT_THAT(found("<P/><PostInstall/><CopyProgress/>"), Contains("page-too-early 2:14"));
    EXPECT_THAT(found("<P/><PostInstall Condition='[V]==1'/><CopyProgress/>"),
                Contains("page-too-early 2:14"));
    EXPECT_THAT(found("<P/><CopyProgress/><PostInstall/>"), Not(Contains(StartsWith("page-too-early"))));
    EXPECT_THAT(found("<P/><PostInstall/>"), Not(Contains(StartsWith("page-too-early"))));
}

TEST(PageCheck, TakesNoPageForFailuresForTheEndOfASuccess) {
    const auto found = [](const std::string& last) {
        return findIn("<Dialogs><P/><CopyProgress/>" + last + "</Dialogs>");
    };
    EXPECT_THAT(found("<BadFinish Special='BadFinish;Finish' Condition='[V]==1'/>"),
                Contains(StartsWith("page-no-finish")));
    EXPECT_THAT(found("<BadFinish Special='BadFinish;Finish'/>"),
                Not(Contains(StartsWith("page-no-finish"))));
    EXPECT_THAT(found("<End Special='Finish' Condition='[V]==1'/>"),
                Not(Contains(StartsWith("page-no-finish"))));
}

TEST(PageCheck, KnowsWhatAnUninstallationDoesNotShow) {
    const std::string pages =
        "<UninstallDialogs><CopyProgress/><P><Image x='1' y='1'>a</Image><Field>V</Field></P>"
        "<Finish Special='Finish'/></UninstallDialogs>";
    const std::vector<std::string> found = findIn(pages);
    EXPECT_THAT(found, Contains("element-in-uninstallation 2:37"));
    EXPECT_THAT(found, Contains("field-in-uninstallation 2:65"));
}

}  // namespace
