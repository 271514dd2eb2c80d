#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "ui/gui/toolkit/control.h"

class ToolkitEvents;

enum class MessageButtons { kOk, kOkCancel, kYesNo };
enum class MessageSign { kNone, kInformation, kError };

struct FrameSpec {
    std::string_view title;
    Extent clientSize;
    // The application draws buttons, radio buttons and progress bars in the colours of each control.
    bool isThemed = false;
    std::int32_t foreground = -1;  // 0x00BBGGRR, -1 leaves it to the toolkit
    std::int32_t background = -1;
};

// Alt with `key` presses `control`.
struct AccessKey {
    char32_t key = 0;
    ControlId control = 0;
};

// Takes a text that is borrowed for the call.
class TextReceiver {
public:
    virtual ~TextReceiver() = default;
    virtual void take(std::string_view text) = 0;
};

// Takes a picture that is borrowed for the call.
class PictureReceiver {
public:
    virtual ~PictureReceiver() = default;
    virtual void take(const Picture& picture) = 0;
};

// The window system, as the pages of a setup use it: one frame of a fixed size with controls at absolute
// places. It decides nothing: what is shown where and what a press means is the caller's.
//
// On Linux the other side of this interface is a module with a C++ library of its own, so nothing but plain
// values and these interfaces crosses it, nothing that one side allocated is freed by the other, and nothing
// throws. What fails for want of memory is not shown. All calls come from the thread that calls run, except
// for wake. Texts are UTF-8 without invalid bytes. An id that isn't a control (any more) is ignored, and its
// getters give 0, false or no text. Before ToolkitEvents::onStart and once the display has gone, calls have
// no effect, and questions get their negative answer.
class Toolkit {
public:
    virtual ~Toolkit() = default;

    // Looks for a display. False: there is none, or none that works, and `outReason` gets one line on it.
    // Repeated calls give the first result.
    virtual bool open(TextReceiver& outReason) = 0;
    // Runs the event loop, which starts with ToolkitEvents::onStart and ends when the frame is closed or the
    // display gone. Can be called again afterwards.
    virtual void run(ToolkitEvents& events) = 0;
    // Handles what is waiting, without an idle event.
    virtual void processEvents() = 0;
    // Has ToolkitEvents::onWake called soon. From any thread.
    virtual void wake() = 0;

    // One line in the font of the controls.
    virtual Extent measureText(std::string_view text) = 0;
    // The pixels of the screen in one unit of length, 1 or more: pictures are made in pixels.
    virtual double pixelDensity() = 0;
    // The background of a page without a colour of its own, 0x00BBGGRR.
    virtual std::int32_t pageColour() = 0;

    // A box that is waited for. True for OK and for Yes.
    virtual bool showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                             MessageSign sign) = 0;
    // True when the user chose a directory, which is handed to `chosen`.
    virtual bool chooseDirectory(std::string_view title, std::string_view start, TextReceiver& chosen) = 0;

    // There is one frame. It is centred, not shown yet, and can't be resized.
    virtual bool makeFrame(const FrameSpec& spec) = 0;
    virtual void setIcon(const Picture& icon) = 0;
    virtual void showFrame() = 0;
    // Without a question; the loop ends.
    virtual void closeFrame() = 0;
    virtual void setClientSize(Extent size) = 0;
    virtual Extent clientSize() = 0;
    virtual void setPageColours(std::int32_t foreground, std::int32_t background) = 0;
    virtual bool isActive() = 0;
    // The keys of a themed frame, which replace the earlier ones.
    virtual void setAccessKeys(std::span<const AccessKey> keys) = 0;
    // Themed buttons underline their access keys.
    virtual void showAccessKeys(bool show) = 0;
    // The button that looks as if Return pressed it; 0 for none.
    virtual void setDefaultButton(ControlId button) = 0;
    // Nothing is drawn between the two, so that a page changes at once. Calls nest.
    virtual void beginChanges() = 0;
    virtual void endChanges() = 0;
    // Draws the whole frame now.
    virtual void redraw() = 0;
    // Draws the page, without the frame's title, into a picture in pixels of the screen, as it looks in the
    // window in front. False: it can't be drawn, and nothing is taken.
    virtual bool drawPage(PictureReceiver& outPicture) = 0;
    // Tells those who can't see the screen.
    virtual void announce(std::string_view text) = 0;

    // The control is hidden and enabled, and the last one that Tab reaches. 0 when it can't be made.
    virtual ControlId add(const ControlSpec& spec) = 0;
    virtual void remove(ControlId control) = 0;
    virtual void setPlace(ControlId control, Place place) = 0;
    virtual Place place(ControlId control) = 0;
    // What the words on a control that is shown need so that none is cut: of kText in its present width, of a
    // list of tasks and of a box the width that shows all at once. 0 by 0 where no words can be cut, since
    // the control scrolls for reading or has none; the same for a password.
    virtual Extent wordsSize(ControlId control) = 0;
    virtual void show(ControlId control, bool show) = 0;
    virtual bool isShown(ControlId control) = 0;
    virtual void enable(ControlId control, bool enable) = 0;
    virtual bool isEnabled(ControlId control) = 0;
    virtual void setFocus(ControlId control) = 0;
    virtual ControlId focused() = 0;
    virtual void setColours(ControlId control, const ControlColours& colours) = 0;
    virtual void setToolTip(ControlId control, std::string_view text) = 0;
    // `label` names the control for those who can't see the screen.
    virtual void setLabel(ControlId control, ControlId label) = 0;

    // What the user typed or the caller set; the caret stays if the text is the same. Setting it causes no
    // ToolkitEvents::onText.
    virtual void setText(ControlId control, std::string_view text) = 0;
    virtual void text(ControlId control, TextReceiver& outText) = 0;
    // Of kLines: adds to the end, which becomes visible.
    virtual void appendText(ControlId control, std::string_view text) = 0;
    // Of a group of radio buttons at most one is chosen, and none at first.
    virtual void setChecked(ControlId control, bool checked) = 0;
    virtual bool isChecked(ControlId control) = 0;
    virtual void setProgress(ControlId control, int percent) = 0;
    virtual void setPicture(ControlId control, const Picture& picture) = 0;
    virtual void setHtml(ControlId control, std::string_view page) = 0;
    // In place of what the control holds.
    virtual void setRichText(ControlId control, std::span<const RichTextCommand> commands) = 0;
    // All icons of a list have this size in pixels. Before the first row.
    virtual void setTaskIcons(ControlId control, Extent size, std::span<const Picture> icons) = 0;
    virtual void addTask(ControlId control, const TaskRow& row) = 0;
    // `index` counts the rows from 0.
    virtual void setTask(ControlId control, int index, const TaskRow& row) = 0;
};

// The only function of the module.
extern "C" {
inline constexpr std::uint32_t kToolkitVersion = 3;  // of this interface; both sides must have the same
// The toolkit, which lives as long as the process, or null for another version.
Toolkit* tandrelToolkit(std::uint32_t version) noexcept;
}
