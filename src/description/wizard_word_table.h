#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

// The words of the wizard itself, which a description may replace: what no element of a page says. %1 to %3
// stand for what is only known when a word is shown.

struct WizardWord {
    std::string_view name;
    std::string_view text;
};

inline constexpr WizardWord kWizardWords[] = {
    // Buttons of pages that describe none.
    {"ButtonNext", "&Next"},
    {"ButtonBack", "&Back"},
    {"ButtonCancel", "&Cancel"},
    // Questions on the console.
    {"AnswerYes", "yes"},
    {"AnswerNo", "no"},
    {"AnswerOk", "OK"},
    {"AnswerCancel", "Cancel"},
    {"AskChoice", "%1 (%2 or %3)"},
    {"AskChoiceAgain", "Please, answer with %1 or %2"},
    {"AskNumber", "Enter your choice [1-%1]"},
    {"AskNumberWithDefault", "Enter your choice [1-%1, default is %2]"},
    {"AskNumberAgain", "Please, answer with a number (1 to %1)"},
    {"ChoiceDisabled", "Choice %1 is disabled, choose something else!"},
    {"PressEnter", "Press Enter to continue..."},
    {"NextPage", "Press ENTER for the next page..."},
    {"PageKeys", "(b goes back, e to the end)"},
    // Cancelling, on the console and in a window.
    {"InstallationRunning", "The installation is running and can not be aborted!"},
    {"InstallerBusy", "The installer is busy and cannot be interrupted"},
    {"Aborting", "Aborting installation..."},
    {"InputEnded", "The input has ended. Aborting installation..."},
    {"UninstallInputEnded", "The input has ended. Aborting uninstallation..."},
    {"CancelQuestion", "This will cancel the installation of\n%1\nAre you sure?"},
    // The end of a run that asks nothing.
    {"AutomaticDone", "Automatic installation was successful!"},
    {"AutomaticFailed", "The automatic installer has encountered an ERROR!"},
    {"UninstallAutomaticDone", "Automatic uninstallation was successful!"},
    {"UninstallAutomaticFailed", "The automatic uninstaller has encountered an ERROR!"},
    // Lines of the list of what is done.
    {"ProgramsRunning", "The installation can not continue, because the processes listed above are running."},
    {"StillRunning", "Still running: %1"},
    {"ErrorSummary", "Installation errors summary:"},
    {"UninstallErrorSummary", "Uninstallation errors summary:"},
    // The status line.
    {"StatusBackup", "Creating backup of old files, in case the installation fails"},
    {"StatusEnvironment", "Updating environment variables"},
    {"StatusIniFiles", "Updating .ini files"},
    {"StatusModifyFiles", "Modifying files"},
    {"StatusShortcuts", "Creating shortcuts"},
    {"StatusFirewall", "Updating Firewall"},
    {"StatusActions", "Running additional installations"},
    {"StatusDone", "The installation was successful."},
    {"StatusFailed", "There were errors during the installation."},
    {"UninstallStatus", "Uninstalling"},
    {"UninstallStatusEnvironment", "Updating environment"},
    {"UninstallStatusDone", "The uninstall was successful."},
    {"UninstallStatusFailed", "There were errors during the uninstall."},
    // Titles and texts of boxes in a window.
    {"BoxTitle", "Installation"},
    {"CancelTitle", "Cancel confirmation"},
    {"CancelRefusedTitle", "Cancel information"},
    {"ErrorTitle", "Error"},
    {"NoHelp", "Sorry, no help is available for this product"},
    {"HelpFailed", "The help WebPage could not be opened."},
    {"ChooseDirectory", "Select a directory"},
    // Values of fields that show a setting.
    {"SettingYes", "Yes"},
    {"SettingNo", "No"},
    {"SettingUnreadable", "Error reading parameter!"},
    // States of tasks, for screen readers.
    {"TaskNotStarted", "not started"},
    {"TaskCurrent", "current"},
    {"TaskFinished", "finished"},
    {"TaskFailed", "failed"},
    {"TaskInactive", "inactive"},
};

inline constexpr std::size_t kWizardWordCount = std::size(kWizardWords);

inline constexpr auto kWizardWordNames = [] {
    std::array<std::string_view, kWizardWordCount> names;
    std::transform(std::begin(kWizardWords), std::end(kWizardWords), names.begin(),
                   [](const WizardWord& word) { return word.name; });
    return names;
}();

// One of the words. A literal that isn't the name of one doesn't compile.
class WordKey {
public:
    template <std::size_t Size>
    consteval WordKey(const char (&literal)[Size])  // NOLINT(google-explicit-constructor)
        : word_(std::find_if(std::begin(kWizardWords), std::end(kWizardWords),
                             [&](const WizardWord& word) { return word.name == literal; })) {
        if (word_ == std::end(kWizardWords)) {
            throw "there is no such word: add it to the table, and to the manual";
        }
    }

    constexpr std::string_view name() const { return word_->name; }
    constexpr std::string_view text() const { return word_->text; }

private:
    const WizardWord* word_;
};
