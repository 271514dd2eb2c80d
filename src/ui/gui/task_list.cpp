#include "ui/gui/task_list.h"

#include <array>

#include "base/visible_text.h"
#include "contracts/install_exchange_info.h"
#include "contracts/installer_ui.h"
#include "description/colour_theme.h"
#include "description/wizard_words.h"
#include "ui/field_values.h"
#include "ui/gui/image_picture.h"
#include "ui/gui/images/task_icon_size.h"
#include "ui/gui/page_pictures.h"
#include "ui/task_states.h"

namespace {

// In the order of TaskState.
constexpr std::array<std::string_view, 5> kIcons = {
    "icon_not_started", "icon_current", "icon_good_finish", "icon_bad_finish", "icon_inactive",
};
static_assert(kIcons.size() == kTaskDisabled + 1);

constexpr std::array<WordKey, kIcons.size()> kStates = {
    "TaskNotStarted", "TaskCurrent", "TaskFinished", "TaskFailed", "TaskInactive",
};

}  // namespace

void TaskList::fill(ControlId control, const DialogElementDesc& element, int dialog) {
    const bool hasIcons = addIcons(control, element);
    InstallExchangeInfo& engine = host_.engine();
    const int count = engine.getTaskCount(dialog);
    int index = 0;
    for (int i = 0; i < count; ++i) {
        const TaskDesc* task = engine.getTask(dialog, i);
        if (task == nullptr || !conditionHolds(task->showCondition.view(), engine)) {
            continue;
        }
        const bool isEnabled = conditionHolds(task->enableCondition.view(), engine);
        const std::int32_t state = isEnabled ? task->state : static_cast<std::int32_t>(kTaskDisabled);
        const std::string text = OUtils::visibleText(taskLabel(*task, state).view());
        host_.toolkit().addTask(control, rowOf(text, state, hasIcons));
        rows_.push_back({control, index++, std::string(task->name.view()), hasIcons});
    }
}

// Where one is missing its place stays empty; without any, the list has none.
bool TaskList::addIcons(ControlId control, const DialogElementDesc& element) {
    ImageSize own;
    for (std::size_t i = 0; i < kIcons.size() && own.width == 0; ++i) {
        own = pictures_.describedSize(kIcons[i]);
    }
    if (own.width == 0) {
        return false;
    }
    const ImageSize size = taskIconSize(readTaskIconSize(element.details.view()), own, pictures_.scale());
    std::array<Image, kIcons.size()> images;
    std::array<Picture, kIcons.size()> icons;
    for (std::size_t i = 0; i < kIcons.size(); ++i) {
        images[i] = pictures_.icon(kIcons[i], size);
        if (images[i].isEmpty()) {
            images[i] = Image(size.width, size.height, true);
        }
        icons[i] = pictureOf(images[i]);
    }
    host_.toolkit().setTaskIcons(control, {size.width, size.height}, icons);
    return true;
}

void TaskList::setState(std::string_view name, std::string_view text, std::int32_t state) {
    const std::string shown = OUtils::visibleText(text);
    for (const Row& row : rows_) {
        if (row.name == name) {
            host_.toolkit().setTask(row.control, row.index, rowOf(shown, state, row.hasIcon));
        }
    }
}

TaskRow TaskList::rowOf(std::string_view text, std::int32_t state, bool hasIcon) {
    const bool isDisabled = state == kTaskDisabled;
    std::int32_t colour = -1;
    if (host_.isThemed()) {
        const ThemeSlot slot = isDisabled ? ThemeSlot::kInactiveText : ThemeSlot::kActiveText;
        colour = host_.engine().getThemeColour(static_cast<int>(slot));
    }
    const bool isKnown = state >= 0 && static_cast<std::size_t>(state) < kIcons.size();
    stateWords_ =
        isKnown ? host_.engine().getWords().text(kStates[static_cast<std::size_t>(state)]) : std::string();
    return {text, hasIcon && isKnown ? state : -1, colour, isDisabled, stateWords_};
}
