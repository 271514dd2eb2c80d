#include "ui/gui/task_list.h"

#include "contracts/installer_ui.h"
#include "description/colour_theme.h"
#include "platform/memory/memory_file_system.h"
#include "ui/gui/page_fixture.h"
#include "ui/gui/page_pictures.h"
#include "ui/gui/test_pictures.h"

namespace {

class TaskListTest : public PageTest {
public:
    TaskListTest() {
        session.addDialog("Frame");
        ControlSpec spec;
        spec.kind = ControlKind::kTaskList;
        control = window.add(spec);
    }
    TaskDesc& addTask(const char* name) {
        auto& list = session.dialogs[0].tasks;
        list.emplace_back();
        list.back().name.assign(name);
        list.back().currentLabel.assign(std::string(name) + " now");
        list.back().unreachedLabel.assign(std::string(name) + " later");
        list.back().finishLabel.assign(std::string(name) + " done");
        return list.back();
    }
    void addIcons() {
        for (const char* name :
             {"icon_not_started", "icon_current", "icon_good_finish", "icon_bad_finish", "icon_inactive"}) {
            session.resources[name] = rawPicture(16, 16, 1);
        }
    }
    std::vector<RecordingToolkit::Task>& rows() { return window.at(control).tasks; }

    MemoryFileSystem files;
    PagePictures pictures{session, files, [] { return 0U; }, {}};
    TaskList tasks{*this, pictures};
    DialogElementDesc element;
    ControlId control = 0;
};

TEST_F(TaskListTest, HasARowForEachTask) {
    addTask("Start");
    addTask("End").state = kTaskCurrent;
    tasks.fill(control, element, 0);
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[0], (RecordingToolkit::Task{"Start later", -1, -1, false, "not started"}));
    EXPECT_EQ(rows()[1].text, "End now");
}

TEST_F(TaskListTest, ATaskThatIsntShownHasNoRow) {
    addTask("Start").showCondition.assign("no");
    addTask("End");
    session.conditions["no"] = 0;
    tasks.fill(control, element, 0);
    tasks.setState("End", "End done", kTaskFinished);
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows()[0].text, "End done");
}

TEST_F(TaskListTest, EachStateHasItsIcon) {
    addIcons();
    addTask("Start");
    tasks.fill(control, element, 0);
    EXPECT_EQ(window.at(control).icons, 5);
    for (const std::int32_t state :
         {kTaskNotReached, kTaskCurrent, kTaskFinished, kTaskFinishedWithError, kTaskDisabled}) {
        tasks.setState("Start", "text", state);
        EXPECT_EQ(rows()[0].icon, state);
    }
    tasks.setState("Start", "text", 7);
    EXPECT_EQ(rows()[0].icon, -1);
}

TEST_F(TaskListTest, EachStateHasItsWordsWithoutIconsAsWell) {
    addTask("Start");
    tasks.fill(control, element, 0);
    std::string words;
    for (const std::int32_t state : {0, 1, 2, 3, 4, 7, -1}) {
        tasks.setState("Start", "text", state);
        words += rows()[0].state + "|";
    }
    EXPECT_EQ(words, "not started|current|finished|failed|inactive|||");
}

TEST_F(TaskListTest, IconsHaveTheSizeOfTheDetailsAndTheScale) {
    addIcons();
    element.details.assign("size=20");
    pictures.setScale(1.5, 2.0);
    fontScale = 1.5;
    tasks.fill(control, element, 0);
    EXPECT_EQ(window.at(control).iconSize, (Extent{60, 60}));
}

TEST_F(TaskListTest, IconsHaveTheirOwnSizeWithoutDetails) {
    addIcons();
    tasks.fill(control, element, 0);
    EXPECT_EQ(window.at(control).iconSize, (Extent{16, 16}));
}

TEST_F(TaskListTest, AMissingIconLeavesThePlacesOfTheOthers) {
    addIcons();
    session.resources.erase("icon_not_started");
    tasks.fill(control, element, 0);
    EXPECT_EQ(window.at(control).icons, 5);
}

TEST_F(TaskListTest, ADisabledTaskIsInactiveAndHasNoColourOfItsOwnWithoutATheme) {
    addTask("Start").enableCondition.assign("no");
    addTask("End");
    session.conditions["no"] = 0;
    tasks.fill(control, element, 0);
    EXPECT_TRUE(rows()[0].isInactive);
    EXPECT_EQ(rows()[0].colour, -1);
    EXPECT_FALSE(rows()[1].isInactive);
    EXPECT_EQ(rows()[1].colour, -1);
}

TEST_F(TaskListTest, ADisabledTaskHasNoColourInAThemeThatDoesNotSayWhich) {
    session.themed = true;
    session.themeColours[static_cast<int>(ThemeSlot::kActiveText)] = 0x111111;
    addTask("Start");
    tasks.fill(control, element, 0);
    EXPECT_EQ(rows()[0].colour, 0x111111);
    tasks.setState("Start", "text", kTaskDisabled);
    EXPECT_EQ(rows()[0].colour, -1);
    EXPECT_TRUE(rows()[0].isInactive);
    session.themeColours[static_cast<int>(ThemeSlot::kInactiveText)] = 0x222222;
    tasks.setState("Start", "text", kTaskDisabled);
    EXPECT_EQ(rows()[0].colour, 0x222222);
}

TEST_F(TaskListTest, AStateReachesAllRowsOfTheName) {
    ControlSpec spec;
    spec.kind = ControlKind::kTaskList;
    const ControlId other = window.add(spec);
    addTask("Start");
    tasks.fill(control, element, 0);
    tasks.fill(other, element, 0);
    tasks.setState("Start", "both", kTaskCurrent);
    tasks.setState("start", "none", kTaskCurrent);
    EXPECT_EQ(rows()[0].text, "both");
    EXPECT_EQ(window.at(other).tasks[0].text, "both");
    tasks.clear();
    tasks.setState("Start", "forgotten", kTaskCurrent);
    EXPECT_EQ(rows()[0].text, "both");
}

}  // namespace
