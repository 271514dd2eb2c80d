#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ui/gui/toolkit/toolkit.h"
#include "ui/gui/toolkit/toolkit_events.h"

// A window without a screen: it records every call, and the test plays the user. A character is kCharacter
// wide; a control without a size of its own is as wide as its text.
class RecordingToolkit : public Toolkit {
public:
    static constexpr int kCharacter = 5;
    static constexpr int kTextHeight = 13;
    static constexpr int kBoxHeight = 21;
    static constexpr int kButtonHeight = 17;

    struct RichCommand {
        RichTextCommand::Kind kind;
        int value;
        std::string text;
        bool operator==(const RichCommand&) const = default;
    };
    struct Task {
        std::string text;
        int icon;
        std::int32_t colour;
        bool isInactive = false;
        std::string state;
        bool operator==(const Task&) const = default;
    };
    struct Control {
        ControlKind kind = ControlKind::kText;
        Place place;
        std::string text;
        std::string name;
        std::string toolTip;
        ControlColours colours;
        bool startsGroup = false;
        bool isShown = false;
        bool isEnabled = true;
        bool isChecked = false;
        int percent = 0;
        ControlId label = 0;
        Extent picture;
        std::vector<std::uint8_t> pixels;  // red, green, blue of each
        std::string html;
        std::vector<RichCommand> rich;
        Extent iconSize;
        int icons = 0;
        std::vector<Task> tasks;
        int changes = 0;  // of the text, by the program
    };
    struct Box {
        std::string text;
        std::string caption;
        MessageButtons buttons;
        MessageSign sign;
    };

    // What a test sets.
    bool hasDisplay = true;
    int textWidth = 237;  // of any text of more than 40 characters
    double density = 1.0;
    bool active = true;
    bool canDraw = true;
    std::string chosenDirectory;      // empty: the user takes none
    std::vector<bool> answers;        // to the boxes, in their order; no when there are no more
    std::function<void()> script;     // plays the user once the frame is shown
    std::function<void()> onProcess;  // what happens during processEvents
    std::function<void(const Box&)> onBox;

    // What a test reads.
    std::map<ControlId, Control> controls;  // in the order in which Tab reaches them
    std::string title;
    Extent client;
    bool isThemed = false;
    bool hasFrame = false;
    bool isFrameShown = false;
    int framesShown = 0;
    bool isClosed = false;
    bool areKeysShown = false;
    std::int32_t pageForeground = -1;
    std::int32_t pageBackground = -1;
    std::vector<AccessKey> accessKeys;
    ControlId defaultButton = 0;
    ControlId focus = 0;
    Extent icon;
    std::vector<Box> boxes;
    std::vector<std::string> announced;
    int openChanges = 0;
    int processed = 0;
    int runs = 0;
    int wakes = 0;
    std::string directoryTitle;
    std::string directoryStart;
    ToolkitEvents* events = nullptr;

    bool open(TextReceiver& outReason) override;
    void run(ToolkitEvents& receiver) override;
    void processEvents() override;
    void wake() override { ++wakes; }
    Extent measureText(std::string_view text) override;
    double pixelDensity() override { return density; }
    std::int32_t pageColour() override;
    bool showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                     MessageSign sign) override;
    bool chooseDirectory(std::string_view text, std::string_view start, TextReceiver& chosen) override;
    bool makeFrame(const FrameSpec& spec) override;
    void setIcon(const Picture& picture) override { icon = {picture.width, picture.height}; }
    void showFrame() override;
    void closeFrame() override { isClosed = true; }
    void setClientSize(Extent size) override { client = size; }
    Extent clientSize() override { return client; }
    void setPageColours(std::int32_t foreground, std::int32_t background) override;
    bool isActive() override { return active; }
    void setAccessKeys(std::span<const AccessKey> keys) override {
        accessKeys.assign(keys.begin(), keys.end());
    }
    void showAccessKeys(bool show) override { areKeysShown = show; }
    void setDefaultButton(ControlId button) override { defaultButton = button; }
    void beginChanges() override { ++openChanges; }
    void endChanges() override { --openChanges; }
    void redraw() override {}
    // All white.
    bool drawPage(PictureReceiver& outPicture) override;
    void announce(std::string_view text) override { announced.emplace_back(text); }
    ControlId add(const ControlSpec& spec) override;
    void remove(ControlId control) override;
    void setPlace(ControlId control, Place place) override;
    Place place(ControlId control) override;
    Extent wordsSize(ControlId control) override;
    void show(ControlId control, bool show) override;
    bool isShown(ControlId control) override;
    void enable(ControlId control, bool enable) override;
    bool isEnabled(ControlId control) override;
    void setFocus(ControlId control) override;
    ControlId focused() override { return focus; }
    void setColours(ControlId control, const ControlColours& colours) override;
    void setToolTip(ControlId control, std::string_view text) override;
    void setLabel(ControlId control, ControlId label) override;
    void setText(ControlId control, std::string_view text) override;
    void text(ControlId control, TextReceiver& outText) override;
    void appendText(ControlId control, std::string_view text) override;
    void setChecked(ControlId control, bool checked) override;
    bool isChecked(ControlId control) override;
    void setProgress(ControlId control, int percent) override;
    void setPicture(ControlId control, const Picture& picture) override;
    void setHtml(ControlId control, std::string_view page) override;
    void setRichText(ControlId control, std::span<const RichTextCommand> commands) override;
    void setTaskIcons(ControlId control, Extent size, std::span<const Picture> icons) override;
    void addTask(ControlId control, const TaskRow& row) override;
    void setTask(ControlId control, int index, const TaskRow& row) override;

    // For tests: the first control of this kind with this text or name; 0 when there is none.
    ControlId find(ControlKind kind, std::string_view text = {}) const;
    // The one that must be there.
    Control& at(ControlId control) { return controls.at(control); }
    Control& the(ControlKind kind, std::string_view text = {}) { return controls.at(find(kind, text)); }

    // The user.
    void press(ControlKind kind, std::string_view text);
    void press(ControlId control);
    void type(ControlId control, std::string_view text);

private:
    Control* get(ControlId control);
    void chooseInGroup(ControlId control);
    void reportFirstShow();

    ControlId lastId_ = 0;
    bool isFirstShowDue_ = false;
};
