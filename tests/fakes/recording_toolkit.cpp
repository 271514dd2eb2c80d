#include "fakes/recording_toolkit.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kLongText = 40;  // of the text that the scale is measured with
constexpr int kIdleTicks = 3;

Extent ownSize(const ControlSpec& spec) {
    const int width = static_cast<int>(spec.text.size()) * RecordingToolkit::kCharacter;
    switch (spec.kind) {
        case ControlKind::kTextBox:
        case ControlKind::kPasswordBox:
            return {width, RecordingToolkit::kBoxHeight};
        case ControlKind::kCheckBox:
        case ControlKind::kRadioButton:
            return {width + RecordingToolkit::kButtonHeight, RecordingToolkit::kButtonHeight};
        default:
            return {width, RecordingToolkit::kTextHeight};
    }
}

std::vector<std::uint8_t> pixelsOf(const Picture& picture) {
    return {picture.rgb, picture.rgb + static_cast<std::ptrdiff_t>(picture.width) * picture.height * 3};
}

}  // namespace

bool RecordingToolkit::open(TextReceiver& outReason) {
    if (!hasDisplay) {
        outReason.take("no display is named");
    }
    return hasDisplay;
}

void RecordingToolkit::run(ToolkitEvents& receiver) {
    events = &receiver;
    isClosed = false;
    ++runs;
    if (receiver.onStart()) {
        receiver.onActivate(active);
        reportFirstShow();
        if (script) {
            script();
        }
        for (int i = 0; i < kIdleTicks && !isClosed; ++i) {
            receiver.onIdle();
        }
    }
    events = nullptr;
}

void RecordingToolkit::showFrame() {
    isFrameShown = true;
    ++framesShown;
    isFirstShowDue_ = true;
}

void RecordingToolkit::reportFirstShow() {
    if (events != nullptr && std::exchange(isFirstShowDue_, false)) {
        events->onFirstShow();
    }
}

void RecordingToolkit::processEvents() {
    ++processed;
    reportFirstShow();
    if (onProcess) {
        onProcess();
    }
}

Extent RecordingToolkit::measureText(std::string_view text) {
    return {text.size() > kLongText ? textWidth : static_cast<int>(text.size()) * kCharacter, kTextHeight};
}

std::int32_t RecordingToolkit::pageColour() {
    return 0x010101;
}

bool RecordingToolkit::showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                                   MessageSign sign) {
    boxes.push_back({std::string(text), std::string(caption), buttons, sign});
    if (onBox) {
        onBox(boxes.back());
    }
    if (answers.empty()) {
        return buttons == MessageButtons::kOk;
    }
    const bool answer = answers.front();
    answers.erase(answers.begin());
    return answer;
}

bool RecordingToolkit::chooseDirectory(std::string_view text, std::string_view start, TextReceiver& chosen) {
    directoryTitle = text;
    directoryStart = start;
    if (chosenDirectory.empty()) {
        return false;
    }
    chosen.take(chosenDirectory);
    return true;
}

bool RecordingToolkit::makeFrame(const FrameSpec& spec) {
    hasFrame = true;
    title = spec.title;
    client = spec.clientSize;
    isThemed = spec.isThemed;
    setPageColours(spec.foreground, spec.background);
    return true;
}

void RecordingToolkit::setPageColours(std::int32_t foreground, std::int32_t background) {
    pageForeground = foreground;
    pageBackground = background;
}

ControlId RecordingToolkit::add(const ControlSpec& spec) {
    Control control;
    control.kind = spec.kind;
    control.place = spec.place;
    const Extent own = ownSize(spec);
    control.place.width = spec.place.width < 1 ? own.width : spec.place.width;
    control.place.height = spec.place.height < 1 ? own.height : spec.place.height;
    control.text = spec.text;
    control.name = spec.name;
    control.toolTip = spec.toolTip;
    control.colours = spec.colours;
    control.startsGroup = spec.startsGroup;
    controls[++lastId_] = control;
    return lastId_;
}

void RecordingToolkit::remove(ControlId control) {
    controls.erase(control);
    focus = focus == control ? 0 : focus;
    defaultButton = defaultButton == control ? 0 : defaultButton;
}

RecordingToolkit::Control* RecordingToolkit::get(ControlId control) {
    const auto found = controls.find(control);
    return found == controls.end() ? nullptr : &found->second;
}

void RecordingToolkit::setPlace(ControlId control, Place place) {
    if (Control* known = get(control)) {
        known->place = place;
    }
}

Place RecordingToolkit::place(ControlId control) {
    const Control* known = get(control);
    return known == nullptr ? Place() : known->place;
}

Extent RecordingToolkit::wordsSize(ControlId control) {
    const Control* known = get(control);
    if (known == nullptr) {
        return {};
    }
    Extent words;
    for (const Task& task : known->tasks) {
        words.width = std::max(words.width, known->iconSize.width + measureText(task.text).width);
    }
    const bool hasCaption = !known->text.empty() && known->kind <= ControlKind::kTextBox;
    return hasCaption ? measureText(known->text) : words;
}

bool RecordingToolkit::drawPage(PictureReceiver& outPicture) {
    if (!canDraw || client.width < 1 || client.height < 1) {
        return false;
    }
    const std::vector<std::uint8_t> white(
        static_cast<std::size_t>(client.width) * static_cast<std::size_t>(client.height) * 3, 255);
    outPicture.take({client.width, client.height, white.data(), nullptr});
    return true;
}

void RecordingToolkit::show(ControlId control, bool show) {
    if (Control* known = get(control)) {
        known->isShown = show;
    }
}

bool RecordingToolkit::isShown(ControlId control) {
    const Control* known = get(control);
    return known != nullptr && known->isShown;
}

void RecordingToolkit::enable(ControlId control, bool enable) {
    if (Control* known = get(control)) {
        known->isEnabled = enable;
    }
}

bool RecordingToolkit::isEnabled(ControlId control) {
    const Control* known = get(control);
    return known != nullptr && known->isEnabled;
}

void RecordingToolkit::setFocus(ControlId control) {
    const Control* known = get(control);
    if (known != nullptr && known->isShown && known->isEnabled) {
        focus = control;
        if (events != nullptr) {
            events->onFocus(control);
        }
    }
}

void RecordingToolkit::setColours(ControlId control, const ControlColours& colours) {
    if (Control* known = get(control)) {
        known->colours = colours;
    }
}

void RecordingToolkit::setToolTip(ControlId control, std::string_view text) {
    if (Control* known = get(control)) {
        known->toolTip = text;
    }
}

void RecordingToolkit::setLabel(ControlId control, ControlId label) {
    if (Control* known = get(control)) {
        known->label = label;
    }
}

void RecordingToolkit::setText(ControlId control, std::string_view text) {
    Control* known = get(control);
    if (known != nullptr && known->text != text) {
        known->text = text;
        ++known->changes;
    }
}

void RecordingToolkit::text(ControlId control, TextReceiver& outText) {
    const Control* known = get(control);
    std::string words = known == nullptr ? std::string() : known->text;
    if (known != nullptr) {
        for (const Task& task : known->tasks) {
            words += (words.empty() ? "" : "\n") + task.text;
        }
    }
    outText.take(words);
}

void RecordingToolkit::appendText(ControlId control, std::string_view text) {
    if (Control* known = get(control)) {
        known->text += text;
        ++known->changes;
    }
}

// From the first button of its group to the last.
void RecordingToolkit::chooseInGroup(ControlId control) {
    auto first = controls.find(control);
    while (first != controls.begin() && !first->second.startsGroup) {
        --first;
    }
    for (auto i = first; i != controls.end() && (i == first || !i->second.startsGroup); ++i) {
        i->second.isChecked = i->first == control;
    }
}

void RecordingToolkit::setChecked(ControlId control, bool checked) {
    Control* known = get(control);
    if (known == nullptr) {
        return;
    }
    if (known->kind == ControlKind::kRadioButton && checked) {
        chooseInGroup(control);
    } else {
        known->isChecked = checked;
    }
}

bool RecordingToolkit::isChecked(ControlId control) {
    const Control* known = get(control);
    return known != nullptr && known->isChecked;
}

void RecordingToolkit::setProgress(ControlId control, int percent) {
    if (Control* known = get(control)) {
        known->percent = percent;
    }
}

void RecordingToolkit::setPicture(ControlId control, const Picture& picture) {
    if (Control* known = get(control)) {
        known->picture = {picture.width, picture.height};
        known->pixels = pixelsOf(picture);
    }
}

void RecordingToolkit::setHtml(ControlId control, std::string_view page) {
    if (Control* known = get(control)) {
        known->html = page;
    }
}

void RecordingToolkit::setRichText(ControlId control, std::span<const RichTextCommand> commands) {
    if (Control* known = get(control)) {
        known->rich.clear();
        for (const RichTextCommand& command : commands) {
            known->rich.push_back({command.kind, command.value, std::string(command.text)});
        }
    }
}

void RecordingToolkit::setTaskIcons(ControlId control, Extent size, std::span<const Picture> icons) {
    if (Control* known = get(control)) {
        known->iconSize = size;
        known->icons = static_cast<int>(icons.size());
    }
}

void RecordingToolkit::addTask(ControlId control, const TaskRow& row) {
    if (Control* known = get(control)) {
        known->tasks.push_back(
            {std::string(row.text), row.icon, row.colour, row.isInactive, std::string(row.state)});
    }
}

void RecordingToolkit::setTask(ControlId control, int index, const TaskRow& row) {
    Control* known = get(control);
    if (known != nullptr && index >= 0 && static_cast<std::size_t>(index) < known->tasks.size()) {
        known->tasks[static_cast<std::size_t>(index)] = {std::string(row.text), row.icon, row.colour,
                                                         row.isInactive, std::string(row.state)};
    }
}

ControlId RecordingToolkit::find(ControlKind kind, std::string_view text) const {
    for (const auto& [id, control] : controls) {
        if (control.kind == kind && (text.empty() || control.text == text || control.name == text)) {
            return id;
        }
    }
    return 0;
}

void RecordingToolkit::press(ControlKind kind, std::string_view text) {
    press(find(kind, text));
}

void RecordingToolkit::press(ControlId control) {
    Control* known = get(control);
    if (known == nullptr || !known->isShown || !known->isEnabled) {
        return;
    }
    if (known->kind == ControlKind::kCheckBox) {
        known->isChecked = !known->isChecked;
    } else if (known->kind == ControlKind::kRadioButton) {
        chooseInGroup(control);
    }
    focus = control;
    events->onPress(control);
}

void RecordingToolkit::type(ControlId control, std::string_view text) {
    if (Control* known = get(control)) {
        known->text = text;
        focus = control;
        events->onText(control);
    }
}
