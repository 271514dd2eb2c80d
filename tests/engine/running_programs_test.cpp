#include "engine/running_programs.h"

#include <gtest/gtest.h>

#include "engine_fixture.h"

namespace {

class RunningProgramsTest : public EngineTest {
protected:
    void enter(const std::string& elements) {
        describe("<RunningApps>" + elements + "</RunningApps>");
        programs_.enterPage(document_.findByName("RunningApps"), [this](std::string_view container) {
            system_.calls.push_back("runActions(" + std::string(container) + ")");
        });
    }
    // The names of those that run, and the others in parentheses.
    std::vector<std::string> look() {
        std::vector<std::string> names;
        for (const RunningPrograms::Program& program : programs_.look()) {
            names.push_back(program.isRunning ? program.name : "(" + program.name + ")");
        }
        return names;
    }

    RunningPrograms programs_{DescriptionTags(document_, expressions_), system_};
};

using Names = std::vector<std::string>;

TEST_F(RunningProgramsTest, SaysWhichOfTheNotedProgramsRun) {
    enter("<TestApp>demo.exe</TestApp><TestApp>other.exe</TestApp>");
    EXPECT_EQ(look(), (Names{"(demo.exe)", "(other.exe)"}));
    system_.running = {"other.exe"};
    EXPECT_EQ(look(), (Names{"(demo.exe)", "other.exe"}));
}

TEST_F(RunningProgramsTest, LooksInTheExpandedDirectory) {
    variables_.set("DIR", "C:/apps");
    enter("<TestApp Directory=\"[DIR]/demo\">demo.exe</TestApp>");
    system_.running = {"demo.exe"};
    EXPECT_EQ(look(), Names{"(demo.exe)"});
    system_.running = {"demo.exe@C:/apps/demo"};
    EXPECT_EQ(look(), Names{"demo.exe"});
}

TEST_F(RunningProgramsTest, StopsProgramsAndServicesAndRunsActionsInDocumentOrder) {
    variables_.set("DIR", "C:/apps");
    enter(
        "<TestApp>demo.exe</TestApp>"
        "<TerminateApp>demo.exe</TerminateApp>"
        "<TerminateApp Service=\"TRUE\" Directory=\"[DIR]\">service.exe</TerminateApp>"
        "<TerminateApp Service=\"1\">tool.exe</TerminateApp>"
        "<TerminateSequence>Stop</TerminateSequence>");
    EXPECT_EQ(system_.calls,
              (Names{"closeApplication(demo.exe)", "closeApplication(service.exe, service, C:/apps)",
                     "closeApplication(tool.exe)", "runActions(Stop)"}));
}

TEST_F(RunningProgramsTest, SkipsElementsWhoseConditionIsFalse) {
    enter(
        "<TestApp Condition=\"0\">demo.exe</TestApp>"
        "<TerminateApp Condition=\"0\">demo.exe</TerminateApp>"
        "<TerminateSequence Condition=\"0\">Stop</TerminateSequence>"
        "<Field>demo.exe</Field>");
    EXPECT_TRUE(system_.calls.empty());
    EXPECT_EQ(look(), Names{});
}

TEST_F(RunningProgramsTest, ForgetsTheProgramsOfAnEarlierPage) {
    describe(
        "<RunningApps><TestApp>demo.exe</TestApp></RunningApps><More><TestApp>other.exe</TestApp></More>");
    for (const char* page : {"RunningApps", "More"}) {
        programs_.enterPage(document_.findByName(page), [](std::string_view) {});
    }
    EXPECT_EQ(look(), Names{"(other.exe)"});
}

}  // namespace
