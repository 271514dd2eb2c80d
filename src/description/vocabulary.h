#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "description/wizard_word_table.h"

// The words of a description: elements, attributes, and words of lists, each with the page of docs/manual
// that describes it. Readers ask with ElementName, AttributeName and WordName, which compile only for words
// of these tables; the check of the manual and the dictionary of the fuzzers are made from them.
namespace vocabulary {

// What a text of the description is read as.
enum class Kind {
    kNone,          // an element without a text of its own
    kText,          // as it is
    kExpandedText,  // with values in place of [NAME]
    kCondition,
    kNumber,
    kColour,
    kWord,      // a word of a list
    kWords,     // words of a list, separated by `;`
    kVariable,  // the name of a variable
    kPresence,  // only whether the attribute exists counts
};

struct Element {
    std::string_view name;
    Kind text;
    std::string_view page;
};

struct Attribute {
    std::string_view element;  // the first of those that have it, or one of the names in parentheses below
    std::string_view name;
    Kind kind;
    std::string_view page;
};

struct WordList {
    std::string_view name;
    std::string_view page;
    std::span<const std::string_view> words;
};

// Stand for elements whose names the description is free to choose, or that share their attributes.
inline constexpr std::string_view kEveryDialog = "(dialog)";
inline constexpr std::string_view kEveryDialogElement = "(element of a dialog)";
inline constexpr std::string_view kEveryTask = "(task)";
inline constexpr std::string_view kEveryAction = "(action)";
inline constexpr std::string_view kEveryExcluded = "(excluded variable)";
inline constexpr std::string_view kEveryColour = "(colour)";
inline constexpr std::string_view kEveryPattern = "(pattern of UninstallWildcards)";

inline constexpr Element kElements[] = {
    {"TandrelGroupInstallation", Kind::kNone, "description.md"},
    {"ProductDesc", Kind::kNone, "description.md"},
    {"Fullname", Kind::kText, "description.md"},
    {"Title", Kind::kText, "description.md"},
    {"MajorVersion", Kind::kText, "description.md"},
    {"MinorVersion", Kind::kText, "description.md"},
    {"MinestVersion", Kind::kText, "description.md"},
    {"Website", Kind::kText, "description.md"},
    {"Supportemail", Kind::kText, "description.md"},
    {"InstallHelpURL", Kind::kText, "description.md"},
    {"Publisher", Kind::kText, "brand.md"},
    {"Copyright", Kind::kText, "brand.md"},
    {"Icon", Kind::kText, "brand.md"},
    {"Banner", Kind::kText, "brand.md"},
    {"UninstallBanner", Kind::kText, "brand.md"},
    {"Words", Kind::kNone, "brand.md"},
    {"Word", Kind::kText, "brand.md"},
    {"LegacyApplication", Kind::kText, "description.md"},
    {"ExternalLegacyApplication", Kind::kText, "description.md"},
    {"Installation", Kind::kNone, "description.md"},
    {"Uninstall", Kind::kNone, "description.md"},
    {"InstallLogFile", Kind::kExpandedText, "description.md"},
    {"InstallBackupFile", Kind::kExpandedText, "description.md"},
    {"UninstallCmd", Kind::kExpandedText, "description.md"},
    {"UninstallXmlFile", Kind::kExpandedText, "description.md"},
    {"LegacyInstallLogFile", Kind::kExpandedText, "description.md"},
    {"UninstallOverrides", Kind::kNone, "variables.md"},
    {"Variable", Kind::kVariable, "variables.md"},
    {"DefValues", Kind::kNone, "variables.md"},
    {"Value", Kind::kText, "variables.md"},
    {"InstallerControlVariables", Kind::kNone, "variables.md"},
    {"InstallerExcludeVariables", Kind::kNone, "variables.md"},
    {"InstallType", Kind::kNone, "files.md"},
    {"Desc", Kind::kText, "files.md"},
    {"FileSet", Kind::kNone, "files.md"},
    {"FN", Kind::kText, "files.md"},
    {"Tree", Kind::kNone, "files.md"},
    {"Dialogs", Kind::kNone, "dialogs.md"},
    {"UninstallDialogs", Kind::kNone, "dialogs.md"},
    {"Field", Kind::kVariable, "dialogs.md"},
    {"Button", Kind::kText, "dialogs.md"},
    {"Trigger", Kind::kNone, "dialogs.md"},
    {"TaskList", Kind::kNone, "dialogs.md"},
    {"SubDialogs", Kind::kNone, "dialogs.md"},
    {"TestApp", Kind::kText, "pages.md"},
    {"TerminateApp", Kind::kText, "pages.md"},
    {"TerminateSequence", Kind::kText, "pages.md"},
    {"ColourTheme", Kind::kNone, "theme.md"},
    {"CustomGroup", Kind::kColour, "theme.md"},
    {"Registry", Kind::kNone, "system-changes.md"},
    {"AddKey", Kind::kNone, "system-changes.md"},
    {"AddValue", Kind::kExpandedText, "system-changes.md"},
    {"RemoveKey", Kind::kNone, "system-changes.md"},
    {"RemoveValue", Kind::kNone, "system-changes.md"},
    {"Environment", Kind::kNone, "system-changes.md"},
    {"Replace", Kind::kExpandedText, "system-changes.md"},
    {"Append", Kind::kExpandedText, "system-changes.md"},
    {"Insert", Kind::kExpandedText, "system-changes.md"},
    {"IniFiles", Kind::kNone, "system-changes.md"},
    {"Shortcuts", Kind::kNone, "system-changes.md"},
    {"Add", Kind::kExpandedText, "system-changes.md"},
    {"ModifyFiles", Kind::kNone, "system-changes.md"},
    {"File", Kind::kExpandedText, "system-changes.md"},
    {"Firewall", Kind::kNone, "system-changes.md"},
    {"Port", Kind::kExpandedText, "system-changes.md"},
    {"Application", Kind::kExpandedText, "system-changes.md"},
    {"AdditionalInstall", Kind::kNone, "system-changes.md"},
    {"PostInstall", Kind::kNone, "system-changes.md"},
    {"PreUninstall", Kind::kNone, "system-changes.md"},
    {"OpenDocument", Kind::kExpandedText, "system-changes.md"},
    {"OpenURL", Kind::kExpandedText, "system-changes.md"},
    {"RunProgram", Kind::kExpandedText, "system-changes.md"},
    {"CopyFile", Kind::kExpandedText, "system-changes.md"},
    {"RemoveFile", Kind::kExpandedText, "system-changes.md"},
    {"RemoveDir", Kind::kExpandedText, "system-changes.md"},
    {"CreateFile", Kind::kExpandedText, "system-changes.md"},
    {"UninstallWildcards", Kind::kNone, "system-changes.md"},
};

inline constexpr Attribute kAttributes[] = {
    {"ExternalLegacyApplication", "Condition", Kind::kCondition, "description.md"},
    {"ExternalLegacyApplication", "Publisher", Kind::kText, "description.md"},
    {"ExternalLegacyApplication", "Details", Kind::kWords, "description.md"},
    {"ExternalLegacyApplication", "Arguments", Kind::kExpandedText, "pages.md"},
    {"LegacyInstallLogFile", "AppName", Kind::kText, "description.md"},
    {"Value", "Name", Kind::kVariable, "variables.md"},
    {"Value", "DataType", Kind::kWord, "variables.md"},
    {"Value", "Default", Kind::kText, "variables.md"},
    {"Value", "UseOld", Kind::kCondition, "variables.md"},
    {"Value", "Recalculate", Kind::kPresence, "variables.md"},
    {"Value", "Condition", Kind::kCondition, "variables.md"},
    {"Value", "RegPlace", Kind::kWord, "variables.md"},
    {"Value", "RegKey", Kind::kText, "variables.md"},
    {"Value", "PreferredKey", Kind::kText, "variables.md"},
    {"Value", "AppName", Kind::kText, "variables.md"},
    {"Value", "Directory", Kind::kExpandedText, "variables.md"},
    {"UninstallOverrides", "Condition", Kind::kCondition, "variables.md"},
    {"Variable", "Condition", Kind::kCondition, "variables.md"},
    {"Variable", "AppList", Kind::kText, "variables.md"},
    {"Variable", "From", Kind::kVariable, "variables.md"},
    {kEveryExcluded, "ExcludeFrom", Kind::kWords, "variables.md"},
    {"InstallType", "Name", Kind::kText, "files.md"},
    {"InstallType", "EditFileSets", Kind::kNumber, "files.md"},
    {"InstallType", "Default", Kind::kNumber, "files.md"},
    {"FileSet", "Name", Kind::kText, "files.md"},
    {"FileSet", "Desc", Kind::kText, "files.md"},
    {"FileSet", "Condition", Kind::kCondition, "files.md"},
    {"FN", "Alias", Kind::kText, "files.md"},
    {"FN", "Dest", Kind::kExpandedText, "files.md"},
    {"FN", "Condition", Kind::kCondition, "files.md"},
    {"FN", "ExpandVarsInFile", Kind::kPresence, "files.md"},
    {"FN", "Executable", Kind::kPresence, "files.md"},
    {"FN", "OkIfMissing", Kind::kPresence, "files.md"},
    {"FN", "StripExeExt", Kind::kCondition, "files.md"},
    {"FN", "BackupExisting", Kind::kPresence, "files.md"},
    {"Tree", "From", Kind::kText, "files.md"},
    {"Tree", "Include", Kind::kText, "files.md"},
    {"Tree", "Exclude", Kind::kText, "files.md"},
    {"Tree", "KeepModes", Kind::kPresence, "files.md"},
    {kEveryDialog, "w", Kind::kNumber, "dialogs.md"},
    {kEveryDialog, "h", Kind::kNumber, "dialogs.md"},
    {kEveryDialog, "BkgColour", Kind::kColour, "dialogs.md"},
    {kEveryDialog, "FgColour", Kind::kColour, "dialogs.md"},
    {kEveryDialog, "Special", Kind::kWords, "dialogs.md"},
    {kEveryDialog, "Condition", Kind::kCondition, "dialogs.md"},
    {kEveryDialog, "Retain", Kind::kText, "dialogs.md"},
    {kEveryTask, "CurrentLabel", Kind::kText, "dialogs.md"},
    {kEveryTask, "FinishLabel", Kind::kText, "dialogs.md"},
    {kEveryTask, "UnreachedLabel", Kind::kText, "dialogs.md"},
    {kEveryTask, "ShowCondition", Kind::kCondition, "dialogs.md"},
    {kEveryTask, "EnableCondition", Kind::kCondition, "dialogs.md"},
    {kEveryDialogElement, "Name", Kind::kText, "dialogs.md"},
    {kEveryDialogElement, "x", Kind::kNumber, "dialogs.md"},
    {kEveryDialogElement, "y", Kind::kNumber, "dialogs.md"},
    {kEveryDialogElement, "w", Kind::kNumber, "dialogs.md"},
    {kEveryDialogElement, "h", Kind::kNumber, "dialogs.md"},
    {kEveryDialogElement, "Condition", Kind::kCondition, "dialogs.md"},
    {kEveryDialogElement, "Details", Kind::kText, "dialogs.md"},
    {kEveryDialogElement, "Format", Kind::kWord, "dialogs.md"},
    {kEveryDialogElement, "ExpandVars", Kind::kPresence, "dialogs.md"},
    {kEveryDialogElement, "HAlign", Kind::kWord, "dialogs.md"},
    {kEveryDialogElement, "VAlign", Kind::kWord, "dialogs.md"},
    {kEveryDialogElement, "BkgColour", Kind::kColour, "dialogs.md"},
    {kEveryDialogElement, "FgColour", Kind::kColour, "dialogs.md"},
    {"Field", "Type", Kind::kWord, "dialogs.md"},
    {"Field", "Label", Kind::kText, "dialogs.md"},
    {"Field", "x", Kind::kNumber, "dialogs.md"},
    {"Field", "y", Kind::kNumber, "dialogs.md"},
    {"Field", "w", Kind::kNumber, "dialogs.md"},
    {"Field", "h", Kind::kNumber, "dialogs.md"},
    {"Field", "Content", Kind::kText, "dialogs.md"},
    {"Field", "Condition", Kind::kCondition, "dialogs.md"},
    {"Field", "Description", Kind::kText, "dialogs.md"},
    {"Field", "Enable", Kind::kCondition, "dialogs.md"},
    {"Field", "ValidationVariable", Kind::kVariable, "dialogs.md"},
    {"Field", "HAlign", Kind::kWord, "dialogs.md"},
    {"Field", "VAlign", Kind::kWord, "dialogs.md"},
    {"Field", "LabelColour", Kind::kColour, "dialogs.md"},
    {"Field", "InputBkgColour", Kind::kColour, "dialogs.md"},
    {"Field", "InputFgColour", Kind::kColour, "dialogs.md"},
    {"Field", "ButtonBkgColour", Kind::kColour, "dialogs.md"},
    {"Field", "ButtonFgColour", Kind::kColour, "dialogs.md"},
    {"Field", "InvalidBkgColour", Kind::kColour, "dialogs.md"},
    {"Field", "InvalidFgColour", Kind::kColour, "dialogs.md"},
    {"Button", "Name", Kind::kWord, "dialogs.md"},
    {"Button", "Condition", Kind::kCondition, "dialogs.md"},
    {"Button", "EnableCondition", Kind::kCondition, "dialogs.md"},
    {"Button", "Action", Kind::kText, "dialogs.md"},
    {"Button", "DialogShift", Kind::kNumber, "dialogs.md"},
    {"Button", "LinkStyle", Kind::kNumber, "dialogs.md"},
    {"Button", "Disableable", Kind::kNumber, "dialogs.md"},
    {"Button", "Default", Kind::kNumber, "dialogs.md"},
    {"Button", "x", Kind::kNumber, "dialogs.md"},
    {"Button", "y", Kind::kNumber, "dialogs.md"},
    {"Button", "w", Kind::kNumber, "dialogs.md"},
    {"Button", "h", Kind::kNumber, "dialogs.md"},
    {"Button", "HAlign", Kind::kWord, "dialogs.md"},
    {"Button", "VAlign", Kind::kWord, "dialogs.md"},
    {"Button", "BkgColour", Kind::kColour, "dialogs.md"},
    {"Button", "FgColour", Kind::kColour, "dialogs.md"},
    {"Button", "ActiveBkgColour", Kind::kColour, "dialogs.md"},
    {"Button", "ActiveFgColour", Kind::kColour, "dialogs.md"},
    {"Trigger", "EvaluateOn", Kind::kWords, "dialogs.md"},
    {"Trigger", "Type", Kind::kWord, "dialogs.md"},
    {"Trigger", "Variable", Kind::kVariable, "dialogs.md"},
    {"Trigger", "Value", Kind::kText, "dialogs.md"},
    {"Trigger", "Condition", Kind::kCondition, "dialogs.md"},
    {"TestApp", "Condition", Kind::kCondition, "pages.md"},
    {"TestApp", "Directory", Kind::kExpandedText, "pages.md"},
    {"TerminateApp", "Condition", Kind::kCondition, "pages.md"},
    {"TerminateApp", "Service", Kind::kWord, "pages.md"},
    {"TerminateSequence", "Condition", Kind::kCondition, "pages.md"},
    {"CustomGroup", "Name", Kind::kText, "theme.md"},
    {"Word", "Name", Kind::kWord, "brand.md"},
    {kEveryColour, "Condition", Kind::kCondition, "theme.md"},
    {"Environment", "Condition", Kind::kCondition, "system-changes.md"},
    {"Replace", "VarName", Kind::kExpandedText, "system-changes.md"},
    {"Replace", "IsPath", Kind::kPresence, "system-changes.md"},
    {"IniFiles", "Condition", Kind::kCondition, "system-changes.md"},
    {"Add", "FileName", Kind::kExpandedText, "system-changes.md"},
    {"Add", "Section", Kind::kExpandedText, "system-changes.md"},
    {"Add", "Key", Kind::kExpandedText, "system-changes.md"},
    {"Add", "BeforeKey", Kind::kExpandedText, "system-changes.md"},
    {"Add", "IsPath", Kind::kPresence, "system-changes.md"},
    {"Add", "IgnoreErrors", Kind::kPresence, "system-changes.md"},
    {"Add", "Type", Kind::kWord, "system-changes.md"},
    {"Add", "Dest", Kind::kExpandedText, "system-changes.md"},
    {"Add", "Target", Kind::kExpandedText, "system-changes.md"},
    {"Add", "Arguments", Kind::kExpandedText, "system-changes.md"},
    {"Add", "Description", Kind::kExpandedText, "system-changes.md"},
    {"Add", "StartPath", Kind::kExpandedText, "system-changes.md"},
    {"Add", "IconPath", Kind::kExpandedText, "system-changes.md"},
    {"ModifyFiles", "Condition", Kind::kCondition, "system-changes.md"},
    {"File", "Command", Kind::kWord, "system-changes.md"},
    {"File", "Path", Kind::kExpandedText, "system-changes.md"},
    {"Port", "Port", Kind::kNumber, "system-changes.md"},
    {"Port", "Protocol", Kind::kWords, "system-changes.md"},
    {"Application", "Target", Kind::kExpandedText, "system-changes.md"},
    {"AddValue", "Place", Kind::kWord, "system-changes.md"},
    {"AddValue", "Path", Kind::kExpandedText, "system-changes.md"},
    {"AddValue", "Value", Kind::kExpandedText, "system-changes.md"},
    {"AddValue", "Type", Kind::kWord, "system-changes.md"},
    {"AddValue", "Expand", Kind::kCondition, "system-changes.md"},
    {"AddValue", "Log", Kind::kExpandedText, "system-changes.md"},
    {"AddValue", "ActionLog", Kind::kCondition, "system-changes.md"},
    {"RemoveKey", "KeyCount", Kind::kNumber, "system-changes.md"},
    {kEveryAction, "Condition", Kind::kCondition, "system-changes.md"},
    {kEveryAction, "Details", Kind::kWords, "system-changes.md"},
    {kEveryAction, "Log", Kind::kExpandedText, "system-changes.md"},
    {kEveryAction, "ProgressUpdate", Kind::kNumber, "system-changes.md"},
    {kEveryAction, "ErrorOutput", Kind::kCondition, "system-changes.md"},
    {"RunProgram", "Arguments", Kind::kExpandedText, "system-changes.md"},
    {"RunProgram", "WorkDir", Kind::kExpandedText, "system-changes.md"},
    {"RunProgram", "Wait", Kind::kCondition, "system-changes.md"},
    {"RunProgram", "AsRoot", Kind::kCondition, "system-changes.md"},
    {"RunProgram", "Asynchronous", Kind::kCondition, "system-changes.md"},
    {"CopyFile", "Dest", Kind::kExpandedText, "system-changes.md"},
    {"CopyFile", "StripExeExt", Kind::kCondition, "system-changes.md"},
    {"CopyFile", "ExpandVarsInFile", Kind::kCondition, "system-changes.md"},
    {"CreateFile", "FileMod", Kind::kText, "system-changes.md"},
    {kEveryPattern, "Dest", Kind::kExpandedText, "system-changes.md"},
    {kEveryPattern, "DeleteDirs", Kind::kCondition, "system-changes.md"},
    {kEveryPattern, "Condition", Kind::kCondition, "system-changes.md"},
};

inline constexpr std::string_view kElementKinds[] = {
    "Text",   "Image",  "HLine",     "RichEditText", "Progress",     "List",
    "TaskLB", "Border", "SlideShow", "HtmlEditText", "PlainEditText"};
inline constexpr std::string_view kFieldTypes[] = {"Directory",        "CheckBox", "RadioButtons",
                                                   "InstallParameter", "EditBox",  "Password"};
inline constexpr std::string_view kHorizontalAligns[] = {"left", "center", "right"};
inline constexpr std::string_view kVerticalAligns[] = {"top", "center", "bottom"};
inline constexpr std::string_view kDocumentFormats[] = {"TandrelMarkdown", "TandrelText"};
inline constexpr std::string_view kTriggerTypes[] = {"VarChange",        "RunActions", "VarReset",
                                                     "VarRecalculation", "FileCheck",  "DebugExpression"};
inline constexpr std::string_view kTriggerMoments[] = {"Start", "Set",     "Dynamic",
                                                       "End",   "DlgEval", "EvalDlg"};
inline constexpr std::string_view kSpecials[] = {
    "BadFinish", "1", "HasSubDialogs", "AutoNext", "Finish", "WeakCondition", "Busy", "Automated"};
inline constexpr std::string_view kButtonNames[] = {"Next", "Back", "Cancel", "Help", "Customize", "Express"};
inline constexpr std::string_view kPageNames[] = {"Uninstall",
                                                  "CopyProgress",
                                                  "RevertInstallation",
                                                  "RevertUninstallation",
                                                  "RegisterApplication",
                                                  "UnregisterApplication",
                                                  "PreUninstall",
                                                  "PostInstall",
                                                  "RunningApps",
                                                  "ExternalUninstall",
                                                  "Finish",
                                                  "BadFinish"};
inline constexpr std::string_view kServiceWords[] = {"true"};
inline constexpr std::string_view kDataTypes[] = {"registry",  "installvar", "install_app", "value",
                                                  "checkproc", "cmdlinearg", "checkfile",   "envvar"};
inline constexpr std::string_view kHives[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE",
                                              "HKEY_USERS"};
inline constexpr std::string_view kExclusions[] = {"all", "log", "config"};
inline constexpr std::string_view kControlVariables[] = {
    "PreviousInstallation", "LegacyInstallation", "ShouldUninstall",
    "CustomizeSettings",    "ProgressDetails",    "InstallError",
    "UninstallError",       "DlgCondition",       "ExternalLegacyInstallation"};
inline constexpr std::string_view kPredefinedVariables[] = {
    "GUI_INSTALL", "INSTALLER_DIR", "INSTALLER_FILE_NAME", "TEMP_DIR", "WX_PORT", "OPERATING_SYSTEM"};
inline constexpr std::string_view kExternalDetails[] = {"substring", "x86"};
inline constexpr std::string_view kThemeColours[] = {"DialogBackground",
                                                     "DialogForeground",
                                                     "ListBackground",
                                                     "InputBoxBackground",
                                                     "InputBoxText",
                                                     "LinkButtons",
                                                     "ButtonsBackground",
                                                     "ButtonsText",
                                                     "ActiveButtonsBackground",
                                                     "ActiveButtonsText",
                                                     "ActiveText",
                                                     "InactiveText",
                                                     "HighlightedText",
                                                     "ProgressBarForeground",
                                                     "ProgressBarBackground",
                                                     "FieldForeground",
                                                     "FieldBackground",
                                                     "InvalidFieldForeground",
                                                     "InvalidFieldBackground",
                                                     "StaticElements"};
inline constexpr std::string_view kActionDetails[] = {"NoExpansion", "NoPathCorrection"};
inline constexpr std::string_view kShortcutTypes[] = {"Symlink", "File", "URL", "Uninstall"};
inline constexpr std::string_view kProtocols[] = {"TCP", "UDP"};
inline constexpr std::string_view kFileCommands[] = {"AddAfter"};
inline constexpr std::string_view kRegistryTypes[] = {"REG_SZ", "REG_DWORD", "REG_BINARY"};

inline constexpr WordList kWordLists[] = {
    {"kinds of elements", "dialogs.md", kElementKinds},
    {"types of fields", "dialogs.md", kFieldTypes},
    {"horizontal alignments", "dialogs.md", kHorizontalAligns},
    {"vertical alignments", "dialogs.md", kVerticalAligns},
    {"formats of documents", "documents.md", kDocumentFormats},
    {"types of triggers", "dialogs.md", kTriggerTypes},
    {"moments of triggers", "dialogs.md", kTriggerMoments},
    {"special words of dialogs", "dialogs.md", kSpecials},
    {"names of buttons", "dialogs.md", kButtonNames},
    {"names of pages", "pages.md", kPageNames},
    {"words of Service", "pages.md", kServiceWords},
    {"data types of default values", "variables.md", kDataTypes},
    {"hives of the registry", "variables.md", kHives},
    {"words of ExcludeFrom", "variables.md", kExclusions},
    {"control variables", "variables.md", kControlVariables},
    {"predefined variables", "variables.md", kPredefinedVariables},
    {"details of external products", "description.md", kExternalDetails},
    {"colours of the theme", "theme.md", kThemeColours},
    {"details of actions", "system-changes.md", kActionDetails},
    {"types of shortcuts", "system-changes.md", kShortcutTypes},
    {"protocols of a port", "system-changes.md", kProtocols},
    {"commands of ModifyFiles", "system-changes.md", kFileCommands},
    {"types of registry values", "system-changes.md", kRegistryTypes},
    {"words of the wizard", "brand.md", kWizardWordNames},
};

constexpr bool isElement(std::string_view name) {
    return std::ranges::any_of(kElements, [name](const Element& element) { return element.name == name; });
}

constexpr bool isAttribute(std::string_view name) {
    return std::ranges::any_of(kAttributes,
                               [name](const Attribute& attribute) { return attribute.name == name; });
}

constexpr bool isWord(std::string_view word) {
    return std::ranges::any_of(kWordLists, [word](const WordList& list) {
        return std::ranges::find(list.words, word) != list.words.end();
    });
}

// Names of elements from the root on, separated by `/`.
constexpr bool isElementPath(std::string_view path) {
    for (std::size_t end = path.find('/'); end != std::string_view::npos; end = path.find('/')) {
        if (!isElement(path.substr(0, end))) {
            return false;
        }
        path.remove_prefix(end + 1);
    }
    return isElement(path);
}

// A name that is in the tables, which the compiler has checked.
template <bool (*isKnown)(std::string_view)>
class CheckedName {
public:
    template <std::size_t Size>
    consteval CheckedName(const char (&literal)[Size])
        : name_(literal) {  // NOLINT(google-explicit-constructor)
        if (!isKnown(name_)) {
            throw "this word is not in the vocabulary: add it to its table, with the page that describes it";
        }
    }

    constexpr operator std::string_view() const { return name_; }  // NOLINT(google-explicit-constructor)
    constexpr std::string_view view() const { return name_; }
    friend constexpr bool operator==(CheckedName, CheckedName) = default;

private:
    std::string_view name_;
};

using ElementName = CheckedName<isElement>;
using ElementPath = CheckedName<isElementPath>;
using AttributeName = CheckedName<isAttribute>;
using WordName = CheckedName<isWord>;

// A word and what it stands for.
template <typename Meaning>
struct Row {
    WordName word;
    Meaning meaning;
};

// Whether each word of a list has its row. A word that means nothing to its reader would be a trap.
template <typename Rows>
constexpr bool coversList(const Rows& rows, std::span<const std::string_view> list) {
    return std::ranges::all_of(list, [&](std::string_view word) {
        return std::ranges::any_of(rows, [&](const auto& row) { return row.word.view() == word; });
    });
}

}  // namespace vocabulary
