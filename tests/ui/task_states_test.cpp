#include "ui/task_states.h"

#include "walk_fixture.h"

namespace {

class TaskStatesTest : public Walk {
protected:
    DialogDesc& frame = addFrame("Frame", {"One", "Two", "Three"});

    TaskDesc& label(int task, const char* current, const char* finished, const char* unreached) {
        TaskDesc& desc = frame.tasks[static_cast<std::size_t>(task)];
        desc.currentLabel.assign(current);
        desc.finishLabel.assign(finished);
        desc.unreachedLabel.assign(unreached);
        return desc;
    }
};

TEST_F(TaskStatesTest, ShowsTheLabelOfEachState) {
    label(0, "current", "finished", "unreached");
    for (std::int32_t value = kTaskNotReached; value <= kTaskDisabled; ++value) {
        walk.updateTask(&ui, 0, 0, value);
    }
    EXPECT_EQ(ui.calls,
              (Calls{"setTaskState(\"One\", \"unreached\", 0)", "setTaskState(\"One\", \"current\", 1)",
                     "setTaskState(\"One\", \"finished\", 2)", "setTaskState(\"One\", \"finished\", 3)",
                     "setTaskState(\"One\", \"unreached\", 4)"}));
}

TEST_F(TaskStatesTest, ShowsTheCurrentLabelWhereAnotherIsMissing) {
    label(0, "current", "", "");
    for (std::int32_t value = kTaskNotReached; value <= kTaskDisabled; ++value) {
        walk.updateTask(&ui, 0, 0, value);
        EXPECT_EQ(ui.calls.back(), "setTaskState(\"One\", \"current\", " + std::to_string(value) + ")");
    }
}

TEST_F(TaskStatesTest, StoresEachStateButDisabled) {
    for (const std::int32_t value : {1, 2, 3, 0}) {
        walk.updateTask(&ui, 0, 1, value);
        EXPECT_EQ(frame.tasks[1].state, value);
    }
    walk.updateTask(&ui, 0, 1, kTaskFinished);
    walk.updateTask(&ui, 0, 1, kTaskDisabled);
    EXPECT_EQ(frame.tasks[1].state, kTaskFinished);
}

TEST_F(TaskStatesTest, DoesNothingForWhatIsNotThere) {
    addDialog("Page");
    walk.updateTask(&ui, 0, 3, kTaskCurrent);
    walk.updateTask(&ui, 0, -1, kTaskCurrent);
    walk.updateTask(&ui, 1, 0, kTaskCurrent);
    walk.updateTask(&ui, 2, 0, kTaskCurrent);
    walk.updateTask(&ui, -1, 0, kTaskCurrent);
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(frame.tasks[0].state, kTaskNotReached);
}

TEST_F(TaskStatesTest, RefreshesTheTasksFromTheCurrentOneOn) {
    for (TaskDesc& task : frame.tasks) {
        task.enableCondition.assign("[ON]==1");
    }
    frame.tasks[1].state = kTaskFinished;
    variables.set("ON", "1");
    placeAt(0, 1);
    walk.refreshTasks(&ui);
    EXPECT_EQ(ui.take(),
              (Calls{"setTaskState(\"Two\", \"Two\", 2)", "setTaskState(\"Three\", \"Three\", 0)"}));
    variables.set("ON", "0");
    walk.refreshTasks(&ui);
    EXPECT_EQ(ui.take(),
              (Calls{"setTaskState(\"Two\", \"Two\", 4)", "setTaskState(\"Three\", \"Three\", 4)"}));
    EXPECT_EQ(frame.tasks[1].state, kTaskFinished);
}

TEST_F(TaskStatesTest, RefreshesAllTasksOfAFrameAndOnlyThoseWithACondition) {
    frame.tasks[0].enableCondition.assign("1");
    frame.tasks[2].enableCondition.assign("broken");
    placeAt(0, -1);
    walk.refreshTasks(&ui);
    EXPECT_EQ(ui.take(),
              (Calls{"setTaskState(\"One\", \"One\", 0)", "setTaskState(\"Three\", \"Three\", 0)"}));
}

TEST_F(TaskStatesTest, RefreshesNothingWithoutATaskList) {
    addDialog("Page");
    placeAt(1);
    walk.refreshTasks(&ui);
    placeAt(-1);
    walk.refreshTasks(&ui);
    EXPECT_TRUE(ui.calls.empty());
}

}  // namespace
