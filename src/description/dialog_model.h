#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/fixed_text.h"

class InstallerUI;
// Bits of DialogDesc::special.
enum DialogSpecial : std::uint32_t {
    kDialogBadFinish = 1,       // an error ending; the search for the last ordinary page passes over it
    kDialogHasSubDialogs = 2,   // a frame around sub-dialogs
    kDialogAutoNext = 4,        // moves on by itself as soon as its work is done
    kDialogFinish = 8,          // leaving it ends the session
    kDialogWeakCondition = 16,  // a closed gate doesn't hold the user back
    kDialogBusy = 32,           // busy while its DlgEval triggers run
    kDialogAutomated = 64,      // the console waits here until the gate is open
};

enum DialogElementKind : std::int32_t {
    kElementText = 10,
    kElementImage = 11,  // the text is the alias of a cabinet file
    kElementHLine = 12,
    kElementRichEditText = 13,
    kElementProgress = 14,
    kElementList = 15,
    kElementTaskLB = 16,
    kElementBorder = 17,
    kElementSlideShow = 18,
    kElementHtmlEditText = 19,
    kElementPlainEditText = 20,
};

// From which edge of the page a position counts; 0 when the description does not say.
enum DialogAlign : std::int32_t {
    kAlignLeft = 20,
    kAlignTop = 21,
    kAlignCenter = 22,
    kAlignRight = 23,
    kAlignBottom = 24,
};

enum DialogFieldType : std::int32_t {
    kFieldDirectory = 30,
    kFieldCheckBox = 31,
    kFieldRadioButtons = 32,
    kFieldInstallParameter = 34,
    kFieldEditBox = 36,
    kFieldPassword = 37,
};

// Bits of DialogButtonDesc::flags.
enum DialogButtonFlag : std::uint32_t {
    kButtonHasShift = 1,
    kButtonHasAction = 2,
    kButtonLinkStyle = 4,
    kButtonDisableable = 8,
    kButtonDefault = 16,
};

// Bits of TriggerDesc::when.
enum TriggerMoment : std::uint32_t {
    kTriggerOnStart = 1,    // on entering a page
    kTriggerOnDynamic = 2,  // on each refresh of the page
    kTriggerOnEnd = 4,      // on leaving it
    kTriggerOnDlgEval = 8,  // in a Busy page, on entering
};

enum TriggerType : std::int32_t {
    kTriggerVarChange = 0,
    kTriggerRunActions = 1,
    kTriggerVarReset = 2,
    kTriggerVarRecalculation = 3,
    kTriggerFileCheck = 4,
    kTriggerDebugExpression = 5,
};

// In all records: texts are cut to one byte less than their capacity. Colours are 0x00BBGGRR, or -1 when not
// set. Coordinates are those of the description.

struct DialogElementDesc {
    FixedText<200> name;  // by which the front end finds it at run time
    std::int32_t kind = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    FixedText<512> condition;
    FixedText<512> details;
    FixedText<200> format;          // of a document; "TandrelMarkdown", or else rich text or HTML by the kind
    std::string text;               // of any length; `\n` has become CR LF
    bool expandsVariables = false;  // only of a Text: shown with values in the place of references
    std::int32_t horizontalAlign = 0;
    std::int32_t verticalAlign = 0;
    std::int32_t backgroundColour = -1;
    std::int32_t foregroundColour = -1;
};

struct DialogFieldDesc {
    FixedText<200> label;
    FixedText<200> variable;  // that the field edits
    std::int32_t type = 0;    // a DialogFieldType
    std::int32_t x = -1;
    std::int32_t y = -1;
    std::int32_t width = -1;
    std::int32_t height = -1;
    FixedText<512> content;  // the items of a field with choices
    FixedText<512> condition;
    FixedText<512> description;
    FixedText<512> enable;
    FixedText<512> validationVariable;
    std::int32_t horizontalAlign = 0;
    std::int32_t verticalAlign = 0;
    std::int32_t labelColour = -1;
    std::int32_t inputBackground = -1;
    std::int32_t inputForeground = -1;
    std::int32_t buttonBackground = -1;
    std::int32_t buttonForeground = -1;
    std::int32_t invalidBackground = -1;
    std::int32_t invalidForeground = -1;
    std::int32_t background = -1;  // only the theme sets it
};

struct DialogButtonDesc {
    FixedText<200> label;  // `&` marks the access key
    FixedText<512> condition;
    FixedText<512> enableCondition;
    FixedText<512> action;
    std::int32_t shift = 0;
    std::uint32_t flags = 0;  // a set of DialogButtonFlag
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 80;
    std::int32_t height = 30;
    std::int32_t horizontalAlign = 0;
    std::int32_t verticalAlign = 0;
    std::int32_t backgroundColour = -1;
    std::int32_t foregroundColour = -1;
    std::int32_t activeBackground = -1;
    std::int32_t activeForeground = -1;
};

struct TaskDesc {
    std::int32_t state = 0;  // a TaskState (contracts/installer_ui.h)
    FixedText<200> name;     // the sub-dialog that it stands for
    FixedText<512> currentLabel;
    FixedText<512> finishLabel;
    FixedText<512> unreachedLabel;
    FixedText<512> showCondition;
    FixedText<512> enableCondition;
};

struct TriggerDesc {
    std::uint32_t when = 0;  // a set of TriggerMoment
    std::int32_t type = kTriggerVarChange;
    FixedText<1024> variable;
    FixedText<1024> value;
    FixedText<512> condition;
};

// What holds the user on a page. Made when the page is first entered.
class PageGate {
public:
    virtual ~PageGate() = default;
    // True when the user may go on. May show on `ui` what the user has to wait for.
    virtual bool isOpen(InstallerUI& ui) = 0;
};

// A dialog or a sub-dialog.
struct DialogDesc {
    FixedText<200> name;  // the page's kind
    std::int32_t node = -1;
    std::int32_t width = 760;
    std::int32_t height = 520;
    std::int32_t backgroundColour = -1;
    std::int32_t foregroundColour = -1;
    std::uint32_t special = 0;       // a set of DialogSpecial
    std::shared_ptr<PageGate> gate;  // null until the page needs one; pages may share it
    FixedText<512> conditionText;
    std::vector<DialogFieldDesc> fields;
    std::vector<DialogElementDesc> elements;
    std::vector<DialogButtonDesc> buttons;
    std::vector<TaskDesc> tasks;         // with kDialogHasSubDialogs only
    std::vector<DialogDesc> subDialogs;  // with kDialogHasSubDialogs only; in the order of the tasks
    std::vector<TriggerDesc> triggers;
    std::vector<std::string> retain;  // names of elements that survive the next change of page

    bool has(DialogSpecial bit) const { return (special & bit) != 0; }
};

// All dialogs of the session. Getters check every index; a `sub` of -1 means the dialog itself. Pointers stay
// valid until a dialog is added.
class DialogModel {
public:
    void clear() { dialogs_.clear(); }
    void add(DialogDesc dialog) { dialogs_.push_back(std::move(dialog)); }

    std::vector<DialogDesc>& getDialogs() { return dialogs_; }
    const std::vector<DialogDesc>& getDialogs() const { return dialogs_; }

    // Null, or 0 for counts and sizes, where an index is bad.
    DialogDesc* getDialog(int dialog, int sub);
    int getDialogCount() const { return static_cast<int>(dialogs_.size()); }
    int getDialogWidth(int dialog);
    int getDialogHeight(int dialog);
    int getSubDialogCount(int dialog);
    DialogElementDesc* getElement(int dialog, int index, int sub);
    int getElementCount(int dialog, int sub);
    DialogButtonDesc* getDialogItem(int dialog, int index, int sub);
    int getDialogItemCount(int dialog, int sub);
    DialogFieldDesc* getField(int dialog, int index, int sub);
    int getFieldCount(int dialog, int sub);
    TaskDesc* getTask(int dialog, int index);
    int getTaskCount(int dialog);
    // -1, -1 where an index is bad.
    void getDialogColours(int dialog, int sub, std::int32_t& outBackground, std::int32_t& outForeground);

private:
    std::vector<DialogDesc> dialogs_;
};
