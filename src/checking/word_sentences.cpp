#include "checking/word_sentences.h"

#include <algorithm>

#include "checking/grammar.h"

namespace {

// For the types of the grammar, separated by blanks; without types for all that no other row has. Without the
// name of an attribute it is about the element.
struct Sentence {
    std::string_view types;
    std::string_view attribute;
    std::string_view text;
};

constexpr Sentence kSentences[] = {
    {"ProductDesc", "", "the name of the product and more about it; without it the setup ends at once"},
    {"Fullname", "", "the name under which the product is registered and looked up, up to 1,023 bytes"},
    {"Title", "", "the title of the setup. Default: the full name, - ver. and the version"},
    {"MajorVersion MinorVersion MinestVersion", "", "the three numbers of the version, joined by dots"},
    {"Website", "", "the address that the registration shows"},
    {"Supportemail InstallHelpURL", "", "addresses for front ends; the console doesn't use them"},
    {"LegacyApplication", "",
     "the registered name of an earlier product that this one replaces; may be given several times"},
    {"ExternalLegacyApplication", "",
     "a product of another vendor that this one replaces; may be given several times, see below"},
    {"Installation", "", "what is installed; contains Uninstall, UninstallOverrides and file sets"},
    {"InstallLogFile", "", "the action log. Without it no log is kept"},
    {"InstallBackupFile", "", "the archive of the files that were replaced. Without it none is kept"},
    {"UninstallCmd", "",
     "the program that uninstalls, usually the bare installer image; a file set has to install it. Used when "
     "the product is registered"},
    {"UninstallXmlFile", "",
     "the description that an uninstallation reads; its path is the first line of the log. A file set has to "
     "install it"},
    {"LegacyInstallLogFile", "",
     "the path of an action log that an earlier product left; may be given several times. The attribute "
     "AppName names that product and is required"},
    {"Desc", "", "a description"},
    {"TestApp", "", "a program that must not run"},
    {"TerminateApp", "",
     "a program that is ended first. Service=\"true\": before that it is started with -stop, if it can be "
     "trusted"},
    {"TerminateSequence", "", "the name of a container of actions that is run first"},
    {"CustomGroup", "",
     "a colour of your own; the attribute Name names it, and the later of two with the same name counts"},
    {"Registry", "", "changes the registry, see below"},
    {"AddKey", "", "creates a key"},
    {"AddValue", "", "writes a value; missing keys of the path are created"},
    {"RemoveKey", "",
     "deletes KeyCount keys (default: 1), starting at the end of the path, each only if it is empty"},
    {"RemoveValue", "", "deletes a value"},
    {"Replace", "", "sets it to the value"},
    {"Append", "", "adds the value after the present one, with a ;"},
    {"Insert", "", "adds the value before the present one, with a ;"},
    {"OpenDocument", "", "opens it with the program that the desktop uses for it"},
    {"RunProgram", "", "starts the program"},
    {"CopyFile", "", "copies the file to the path in Dest"},
    {"RemoveFile", "", "deletes the file"},
    {"RemoveDir", "", "deletes the directory if it is empty, and each directory above it that becomes empty"},
    {"CreateFile", "", "extracts the packed file with this alias into the directory Dest, which must exist"},
    {"TandrelGroupInstallation", "", "One file, install.xml, describes a product"},
    {"Uninstall", "", "specifies where the records of an installation go"},
    {"UninstallOverrides", "", "passes variables to an earlier product that this setup removes"},
    {"Variable", "", "Each child Variable names one variable of that product"},
    {"DefValues", "",
     "the variables and their initial values; without it the setup ends before its first page"},
    {"Value", "", "Each Value creates one variable, in their order in the file"},
    {"InstallerControlVariables", "", "variables that the setup itself reads and sets"},
    {"InstallerExcludeVariables", "", "variables that are kept out of the log or of config.xml"},
    {"InstallType", "", "Kinds of installation that a front end can offer"},
    {"FileSet", "", "A set of files that belong together"},
    {"FN", "",
     "One file. Its text is the path of the file below the directory that the packager's --root names"},
    {"Dialogs", "", "the pages of an installation; without it the setup ends before its first page"},
    {"UninstallDialogs", "", "the pages of an uninstallation"},
    {"Field", "", "A Field asks for the value of the variable that its text names (up to 199 bytes)"},
    {"Button", "",
     "A Button needs a text (up to 199 bytes; &amp; precedes the letter that presses it), x and y"},
    {"Trigger", "", "A Trigger does something at certain moments of its page"},
    {"TaskList", "",
     "The children of TaskList are tasks; the name of each task is the name of its page in SubDialogs"},
    {"SubDialogs", "", "A page with HasSubDialogs needs a child TaskList and a child SubDialogs"},
    {"ColourTheme", "", "sets colours for the window; the console doesn't use it"},
    {"Environment", "", "Variables of the whole system, not of one user"},
    {"IniFiles ModifyFiles Shortcuts Firewall", "",
     "Besides installing files, an installation can change the environment, INI files, text files and the "
     "registry, make shortcuts and firewall exceptions, and run small actions"},
    {"Add@IniFiles", "",
     "The text is the value. Undoing removes the key, or restores the earlier value; a section stays"},
    {"Add@Shortcuts", "", "The text is the file name of the shortcut"},
    {"File", "",
     "A child File with Command=\"AddAfter\" adds lines to the text file Path. Its text is the path of a "
     "file that specifies the lines"},
    {"Port Application", "", "the name of the exception"},
    {"AdditionalInstall", "", "AdditionalInstall at the end of the copying"},
    {"PostInstall PreUninstall", "",
     "PostInstall and PreUninstall on the pages of these names, PreUninstall also before an uninstallation"},
    {"OpenURL", "",
     "OpenDocument and OpenURL open it with the rights of the user at whose desktop the setup runs, not with "
     "the setup's own"},
    {"UninstallWildcards", "", "What an uninstallation deletes in addition to what its log records"},
    {"(page)", "", "The name of a page's element decides what the setup does when it reaches the page"},
    {"(element)", "", "The content of a page. An element without x or y doesn't exist"},
    {"(colour)", "", "Each child with a true Condition sets one colour"},
    {"(control variable)", "",
     "Each element of InstallerControlVariables contains the name of one variable, up to 199 bytes"},
    {"ExternalLegacyApplication", "Condition", "the product is only looked up when it is true"},
    {"ExternalLegacyApplication", "Publisher",
     "with substring: the entry's publisher must contain this text"},
    {"ExternalLegacyApplication", "Details",
     "a ;-separated list of words. substring: the text is a part of the registered name. x86: look in the "
     "registry's 32-bit view"},
    {"Value", "Name", "the variable. Required"},
    {"Value", "DataType",
     "the source of the value, see below. Required; with a word that isn't in the table, the Value only "
     "creates an empty variable"},
    {"Value", "Default", "the value to use if what is looked up doesn't exist"},
    {"Value", "UseOld",
     "a condition: when it is true, a value that an earlier installation of the product left in its log is "
     "kept, unless it is empty"},
    {"Value", "Recalculate",
     "for value: the variable follows its expression. On, unless the attribute begins with 0"},
    {"Value", "Condition",
     "the element only counts when it is true; so two elements can share a name and exclude each other"},
    {"Value", "RegPlace",
     "the hive: HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE or HKEY_USERS, in exactly this "
     "form. Required"},
    {"Value", "RegKey",
     "the key, with / or \\. Required. A part may end in *: every key that begins with the text before it is "
     "tried, in the registry's order, and the first that has the value is used. At most 65,536 keys"},
    {"Value", "PreferredKey", "with a *: tried first"},
    {"Variable", "AppList", "a ;-separated list of names of products; the child only counts for these"},
    {"Variable", "From",
     "the variable of this product whose value is used; default: the one with the same name"},
    {"InstallType", "Name", "the name, up to 198 bytes"},
    {"InstallType", "EditFileSets", "1: the user may choose the file sets"},
    {"InstallType", "Default", "1: this kind is proposed; only counts together with EditFileSets"},
    {"FileSet", "Name", "required: a set without it is left out, with its files"},
    {"FileSet", "Desc", "a description"},
    {"FileSet", "Condition", "the files are installed when it is true. They are in the package in any case"},
    {"FN", "Alias",
     "the name of the file in the package. Default: the whole text without / and \\; bin/tool.exe becomes "
     "bintool.exe"},
    {"FN", "Dest",
     "the directory on the user's machine, with references. Without it the file is only packed, as an image "
     "or a document that other elements refer to by its alias"},
    {"FN", "Condition", "the file is installed when this and the set's condition are true"},
    {"FN Tree", "ExpandVarsInFile",
     "references [NAME] in the file are replaced while it is installed. For texts only: whatever follows a "
     "zero byte is lost"},
    {"FN Tree", "Executable",
     "the file is marked as a program, on systems that have such a mark; if that fails, so does the "
     "installation"},
    {"FN Tree", "OkIfMissing", "the packager and the setup skip the file when it isn't there"},
    {"FN Tree", "StripExeExt", "accepted with Executable: a condition. It has no effect on installed files"},
    {"FN Tree", "BackupExisting",
     "a file on the disk that differs goes into the backup archive before it is overwritten; if that fails, "
     "the file stays as it is and counts as failed"},
    {"(page) Button", "w", "the size"},
    {"(page) Button", "h", "the size"},
    {"(page)", "Special", "a ;-separated list of the words below; unknown words are ignored"},
    {"(page)", "Condition", "the page is skipped when it is false, in both directions"},
    {"(page)", "Retain",
     "a ;-separated list of names of elements that stay on the screen during the next change of page"},
    {"(element)", "Name", "the name by which the front end finds the element, for example for Retain"},
    {"(element) Button", "x", "position and size; a negative w or h is a distance from the opposite edge"},
    {"(element) Button", "y", "position and size; a negative w or h is a distance from the opposite edge"},
    {"(element)", "w", "position and size; a negative w or h is a distance from the opposite edge"},
    {"(element)", "h", "position and size; a negative w or h is a distance from the opposite edge"},
    {"(element)", "Condition", "the element is only shown when it is true"},
    {"(element)", "Details", "of a TaskLB: the size of its icons, such as size=18"},
    {"(element)", "Format", "the format of a document, see documents"},
    {"(element)", "HAlign", "the edge from which x is measured: left or right. center only aligns a picture"},
    {"(element)", "VAlign", "the edge from which y is measured: top or bottom. center only aligns a picture"},
    {"Field", "Label", "the question"},
    {"Field", "x", "as for elements; a field without y follows the one before it"},
    {"Field", "y", "as for elements; a field without y follows the one before it"},
    {"Field", "w", "as for elements; a field without y follows the one before it"},
    {"Field", "h", "as for elements; a field without y follows the one before it"},
    {"Field", "Content",
     "of RadioButtons: the items, ;-separated. Of InstallParameter: what kind of value it shows"},
    {"Field", "Condition", "the field only counts when it is true"},
    {"Field", "Description",
     "of RadioButtons: a text for each item, ;-separated, shown after it on the console and as its tool tip "
     "in a window. The console doesn't show them when there are more texts than items. Of other fields: a "
     "tool tip"},
    {"Field", "Enable",
     "of RadioButtons: a condition for each item, separated by a bar; items whose condition is false can't "
     "be chosen"},
    {"Field", "ValidationVariable",
     "a variable that holds whether the field's value is valid: it starts as 1, and the graphical front end "
     "sets it"},
    {"Field", "HAlign", "as for elements; a field without y follows the one before it"},
    {"Field", "VAlign", "as for elements; a field without y follows the one before it"},
    {"Field", "LabelColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Field", "InputBkgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Field", "InputFgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Field", "ButtonBkgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Field", "ButtonFgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Field", "InvalidBkgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Field", "InvalidFgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Button", "Name", "one of the presets below, which overrides the other attributes"},
    {"Button", "Condition", "whether the button exists, whether it can be pressed; 511 bytes each"},
    {"Button", "EnableCondition", "whether the button exists, whether it can be pressed; 511 bytes each"},
    {"Button", "Action",
     "what to do first, up to 511 bytes: Cancel, Help, or assignments [NAME]='value', separated by ;. Any "
     "action that begins with one of the first two words counts as that word"},
    {"Button", "DialogShift", "how many pages to go forward, or back if negative"},
    {"Button", "LinkStyle", "1: looks like a link"},
    {"Button", "Disableable", "1: can't be pressed while the page stops the user from going on"},
    {"Button", "Default", "1: the Enter key presses it"},
    {"Button", "HAlign", "left or right, top or bottom"},
    {"Button", "VAlign", "left or right, top or bottom"},
    {"Button", "BkgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Button", "FgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Button", "ActiveBkgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Button", "ActiveFgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"Add@IniFiles", "FileName", "the file; it is created if necessary. Required"},
    {"Add@IniFiles", "Section",
     "the place of the value, case-sensitive. A missing section is added at the end of the file. Required"},
    {"Add@IniFiles", "Key",
     "the place of the value, case-sensitive. A missing section is added at the end of the file. Required"},
    {"Add@IniFiles", "BeforeKey",
     "a new key is inserted before this one; if this one is missing or not given, after the last key of its "
     "section"},
    {"Add@IniFiles", "IsPath",
     "if present: nothing is added if a key of the section names the same directory"},
    {"Add@IniFiles", "IgnoreErrors", "if present: a failure doesn't end the group"},
    {"Add@Shortcuts", "Type",
     "File: a shortcut to a file; URL: a shortcut to an address; Uninstall: a shortcut that starts the "
     "uninstallation of the product"},
    {"Tree", "", "Stands in a FileSet for all files below a directory"},
    {"Tree", "From", "the directory below the packager's --root; . is the root itself. Required"},
    {"Tree", "Dest",
     "the directory on the user's machine that gets what From holds, with references. Required"},
    {"Tree", "Include", "patterns, separated by ;: what belongs to the tree. Default: everything"},
    {"Tree", "Exclude",
     "patterns: what doesn't, even if Include says so. Excluded directories aren't looked into"},
    {"Tree", "KeepModes",
     "if present: a file that is marked as a program where it is packed gets Executable"},
    {"Add@Shortcuts", "Dest", "the directory of the shortcut; it is created. Required"},
    {"Add@Shortcuts", "Target",
     "the file or address that the shortcut opens. Required, except for Uninstall"},
    {"Add@Shortcuts", "Arguments", "arguments of the program"},
    {"Add@Shortcuts", "Description", "shown with the shortcut"},
    {"Add@Shortcuts", "StartPath", "the directory in which the program starts"},
    {"Add@Shortcuts", "IconPath", "the file with the icon"},
    {"AddValue AddKey RemoveValue RemoveKey", "Place",
     "the hive: one of the four names of RegPlace. Required"},
    {"AddValue AddKey RemoveValue RemoveKey", "Path", "the key, with / or \\, up to 511 bytes. Required"},
    {"AddValue", "Type",
     "of AddValue: REG_SZ (default), REG_DWORD with a hexadecimal number, REG_BINARY with pairs of "
     "hexadecimal digits"},
    {"AddValue AddKey RemoveValue RemoveKey", "Expand",
     "a condition: references in texts are replaced. Without it they are not"},
    {"AddValue AddKey RemoveValue RemoveKey OpenDocument OpenURL RunProgram CopyFile CreateFile RemoveFile "
     "RemoveDir Registry",
     "Log", "a line for the screen"},
    {"AddValue AddKey RemoveValue RemoveKey", "ActionLog",
     "a condition: false keeps the change out of the action log, so that it is never undone"},
    {"OpenDocument OpenURL RunProgram CopyFile CreateFile RemoveFile RemoveDir Registry", "Condition",
     "the action only runs when it is true"},
    {"OpenDocument OpenURL RunProgram CopyFile CreateFile RemoveFile RemoveDir Registry", "Details",
     "a ;-separated list: NoExpansion leaves references as they are, NoPathCorrection leaves separators as "
     "they are"},
    {"OpenDocument OpenURL RunProgram CopyFile CreateFile RemoveFile RemoveDir Registry", "ProgressUpdate",
     "a number; during the wait the progress advances each time this many hundredths of a second have "
     "passed"},
    {"OpenDocument OpenURL RunProgram CopyFile CreateFile RemoveFile RemoveDir Registry", "ErrorOutput",
     "a condition; false: the program's errors aren't shown"},
    {"RunProgram", "Arguments", "arguments, and the directory to start in"},
    {"RunProgram", "WorkDir", "arguments, and the directory to start in"},
    {"CreateFile", "FileMod", "only written into the debug log"},
    {"ExternalLegacyApplication", "Arguments",
     "its registered uninstall command is run with the arguments appended"},
    {"LegacyInstallLogFile", "AppName", "The attribute AppName names that product and is required"},
    {"Value", "AppName",
     "the value of this variable in the installation of the product that the attribute AppName names"},
    {"Value TestApp TerminateApp", "Directory", "only a program whose path contains it counts"},
    {"TerminateApp", "Service", "before that it is started with -stop"},
    {"Field", "Type", "A field with another Type, or without one, doesn't exist"},
    {"Trigger", "EvaluateOn", "A trigger without a moment doesn't exist"},
    {"Trigger", "Type", "A trigger of any other type without Value doesn't exist"},
    {"Trigger", "Variable", "sets the variable that Variable names; this is the default type"},
    {"Trigger", "Value", "the value, with [NAME] replaced, up to 1,023 bytes"},
    {"Trigger", "Condition", "each if its Condition (up to 511 bytes) is true at that moment"},
    {"CustomGroup", "Name", "the attribute Name names it, and the later of two with the same name counts"},
    {"Replace Append Insert", "VarName", "Both the name and the text, which is the value, are required"},
    {"Replace Append Insert", "IsPath",
     "a directory that is in the list already, in any spelling, isn't added again"},
    {"File", "Command", "A child File with Command=\"AddAfter\" adds lines to the text file Path"},
    {"File", "Path", "adds lines to the text file Path"},
    {"Port", "Port", "Port: its number"},
    {"Port", "Protocol", "TCP, UDP or both, joined by ;. Default: both"},
    {"Application", "Target", "the path of the program"},
    {"AddValue RemoveValue", "Value", "its name, empty for the default value of the key"},
    {"RemoveKey", "KeyCount",
     "deletes KeyCount keys (default: 1), starting at the end of the path, each only if it is empty"},
    {"CopyFile", "Dest", "copies the file to the path in Dest"},
    {"CreateFile", "Dest",
     "extracts the packed file with this alias into the directory Dest, which must exist"},
    {"CopyFile CreateFile", "StripExeExt", "drop the extension of its name"},
    {"CopyFile CreateFile", "ExpandVarsInFile", "replace references in the file (of less than 1 MiB)"},
    {"RunProgram", "Wait", "wait for its end"},
    {"RunProgram", "AsRoot", "with raised rights"},
    {"RunProgram", "Asynchronous", "in parallel to the setup's own work"},
    {"TestApp TerminateApp TerminateSequence", "Condition", "All accept a Condition"},
    {"", "Condition", "A condition that isn't given is true"},
    {"", "BkgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
    {"", "FgColour",
     "Every colour attribute of pages, elements, fields and buttons takes such a number, or Group: and the "
     "name of a CustomGroup, which is case-sensitive"},
};

}  // namespace

std::string_view sentenceOf(std::string_view type, std::string_view attribute) {
    const auto* const found = std::ranges::find_if(kSentences, [&](const Sentence& sentence) {
        return sentence.attribute == attribute &&
               (sentence.types.empty() || grammar::listsType(sentence.types, type));
    });
    return found == std::end(kSentences) ? std::string_view() : found->text;
}
