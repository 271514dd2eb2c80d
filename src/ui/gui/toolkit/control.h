#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// Coordinates and lengths are the toolkit's: from the top left corner of the client area, not scaled any
// more.
struct Extent {
    int width = 0;
    int height = 0;

    bool operator==(const Extent&) const = default;
};

struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Place&) const = default;
};

// 0 is no control. An id isn't used a second time.
using ControlId = std::int32_t;

enum class ControlKind {
    kButton,
    kLinkButton,  // a button that looks like a link
    kText,        // words that explain the page; `\n` starts a new line
    kLabel,       // names a field or shows its value
    kTextBox,     // one line
    kPasswordBox,
    kCheckBox,
    kRadioButton,  // belongs to the last group that was started
    kProgressBar,  // 0 ... 100
    kLine,         // horizontal
    kFrame,        // around other controls
    kLines,        // a scrolling list of lines, read-only
    kRichText,     // these three are documents, read-only
    kHtml,
    kPlainText,
    kTaskList,
    kPicture,
};

// 0x00BBGGRR; -1 leaves the colour to the toolkit.
struct ControlColours {
    std::int32_t foreground = -1;
    std::int32_t background = -1;
    // While the mouse is over the control or it has the focus.
    std::int32_t activeForeground = -1;
    std::int32_t activeBackground = -1;

    bool operator==(const ControlColours&) const = default;
};

// Texts are UTF-8 and borrowed for the call.
struct ControlSpec {
    ControlKind kind = ControlKind::kText;
    // A width or height below 1 is the control's own.
    Place place;
    // The caption, where `&` marks the access key of a button; the content of a box or of a label.
    std::string_view text;
    // What a screen reader says, where the caption isn't it. Empty: see Toolkit::setLabel.
    std::string_view name;
    std::string_view toolTip;
    ControlColours colours;
    bool startsGroup = false;  // the first radio button of a group
};

// Rows from the top, without gaps: three bytes red, green, blue for each pixel, and one byte of alpha for
// each (0 is transparent), or null. Borrowed for the call.
struct Picture {
    int width = 0;
    int height = 0;
    const std::uint8_t* rgb = nullptr;
    const std::uint8_t* alpha = nullptr;
};

// A row of a task list. `icon` is an index in the list's icons, or -1.
struct TaskRow {
    std::string_view text;
    int icon = -1;
    std::int32_t colour = -1;  // -1 is the system's
    bool isInactive = false;
    std::string_view state = {};  // the icon in words, for those who can't see it
};

// One call to fill a rich text control; they are carried out in order.
struct RichTextCommand {
    enum class Kind {
        kWrite,         // `text`
        kAddParagraph,  // `text`
        kBeginBold,     // these six open a style, which lasts until its kEndStyle
        kBeginItalic,
        kBeginUnderline,
        kBeginAlignment,   // `value`: 0 left, 1 centre, 2 right, 3 justified
        kBeginTextColour,  // `value`: 0x00BBGGRR
        kBeginLeftIndent,  // `value`: tenths of a millimetre
        kEndStyle,         // of the style that was opened last
        kSetPointSize,     // `value`; 0 is the size that the control had at first
    };

    Kind kind = Kind::kWrite;
    int value = 0;
    std::string_view text;
};
