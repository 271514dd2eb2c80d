#include "session/installer.h"

#include <exception>

#include "base/errors.h"
#include "contracts/installer_ui.h"
#include "contracts/system_operations.h"
#include "description/answers_file.h"
#include "description/unknown_names.h"
#include "engine/action_log_reader.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "session/logged_variables.h"
#include "support/p_mem_stream.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";

}  // namespace

Installer::Installer(const platform::Platform& machine, SystemOperations& system, AnswersFile& answers,
                     NestedSessionFactory& nestedSessions, DebugLog log)
    : SessionState(machine, log),
      machine_(machine),
      system_(system),
      answers_(answers),
      model_(machine, system, answers, log),
      work_(*this, model_, machine, system, nestedSessions),
      walk_({model_.dialogs, model_.variables.controls(), model_.variables.store(),
             model_.variables.expressions()},
            work_, machine.files, log),
      lock_(machine, log) {
    walk_.state().errorSummary = &errorList;
}

void Installer::setConsole(PConsole* console, std::int32_t level) {
    debugLog.setTarget(console, level);
}

int Installer::loadCabinet(const char* path, std::int64_t offset, std::uint32_t flags) {
    sessionFlags = flags;
    actionLogFile.reset();
    if ((flags & kSessionActionLog) == 0) {
        const int result = static_cast<int>(cabinet.load(path, offset));
        loadError_ = result == 0 ? "" : "the package can't be read (" + std::to_string(result) + ")";
        if (const int status = cabinet.systemStatus(); status > 0) {
            loadError_ += ": " + platform::errorText(status);
        }
        return result;
    }
    std::string content;
    const int status = OUtils::readWholeFile(path, content, machine_.files);
    if (status != 0) {
        loadError_ = OUtils::readingErrorText(status);
        debugLog.print("ERROR: Failed to open the installation log file (%s)", path);
        return -1;
    }
    actionLogFile = std::make_unique<PMemStream>(content);
    return 0;
}

int Installer::run(InstallerUI* ui, PConsole* console) {
    setConsole(console, debugLog.level());
    if (ui == nullptr) {
        debugLog.line("ERROR: No installer UI handler specified");
        return -1;
    }
    int result = -1;
    try {
        result = prepare(*ui) ? runUI(*ui) : startResult_;
    } catch (const GenericError& error) {
        reportError(*ui, error.what(), error.reason());
    } catch (const std::exception& error) {
        reportError(*ui, error.what(), "");
    }
    if (result != 0 && result != kStartAgain) {
        runOutcome.note(RunEnd::kNotStarted);
    }
    notice_.show(*ui);
    return result;
}

bool Installer::prepare(InstallerUI& ui) {
    model_.setGraphical(ui.isGraphical() != 0);
    if (!readDescription(ui)) {
        return false;
    }
    if (!model_.read(cabinet, isActionLogSession())) {
        return refuseStart(ui, model_.product.exists() ? "the description has no pages that can be shown"
                                                       : "the description doesn't name a product");
    }
    if (!takeTurn(ui)) {
        return false;
    }
    work_.earlier().findRegistered(isActionLogSession());
    if (!loadDefaultValues(ui)) {
        return false;
    }
    work_.earlier().findOthers(isActionLogSession());
    return true;
}

bool Installer::takeTurn(InstallerUI& ui) {
    const std::string product = model_.product.fullName().value_or("");
    if (product.empty()) {
        return true;
    }
    switch (lock_.take(product)) {
        case ProductLock::Result::kBusy:
            startResult_ = kAnotherRunIsAtWork;
            runOutcome.note(RunEnd::kAnotherRun);
            say(ui, "Another setup or uninstallation of " + product +
                        " is at work. Nothing was changed; please try again later.");
            return false;
        case ProductLock::Result::kPartOfAnother:
            debugLog.line("Another run for this product started this one");
            return true;
        case ProductLock::Result::kTaken:
            break;
    }
    return recover(ui);
}

bool Installer::recover(InstallerUI& ui) {
    Report report(&ui, &errorList);
    if (model_.isGraphical()) {
        report.copyNotesTo([this](std::string_view line) { notice_.add(line); });
    }
    switch (work_.recovery().run(concern(), !isUnattended, report)) {
        case Recovery::Outcome::kBusy:
            startResult_ = kAnotherRunIsAtWork;
            runOutcome.note(RunEnd::kAnotherRun);
            say(ui, "Nothing was changed; please try again later.");
            return false;
        case Recovery::Outcome::kDeclined:
        case Recovery::Outcome::kIncomplete:
            startResult_ = kNotRecovered;
            runOutcome.note(RunEnd::kNotRecovered);
            return false;
        case Recovery::Outcome::kRecovered:
            startResult_ = kStartAgain;
            errorList.clear();  // they are about the run before
            return !isActionLogSession();
        case Recovery::Outcome::kNothing:
            break;
    }
    return true;
}

// Runs for the product and for all that it replaces.
Recovery::Concern Installer::concern() {
    Recovery::Concern concern;
    concern.products.push_back(model_.product.fullName().value_or(""));
    if (!isActionLogSession()) {
        for (std::string& name : work_.earlier().formerNames()) {
            concern.products.push_back(std::move(name));
        }
    }
    if (const auto log = model_.product.installLogFile()) {
        concern.logs.push_back(*log);
    }
    return concern;
}

std::string Installer::productLog() {
    const auto registered = system_.applicationLogFile(model_.product.fullName().value_or(""));
    for (const std::string& path : {registered.value_or(""), model_.product.installLogFile().value_or("")}) {
        if (!path.empty() && machine_.files.kindOf(path) == platform::PathKind::kFile) {
            return path;
        }
    }
    return {};
}

bool Installer::refuseStart(InstallerUI& ui, std::string_view why) {
    const std::string kind = isActionLogSession() ? "uninstallation" : "installation";
    runOutcome.note(isActionLogSession() ? RunEnd::kNotStarted : RunEnd::kPackageDamaged);
    say(ui, "The " + kind + " can't start: " + std::string(why));
    return false;
}

bool Installer::readDescription(InstallerUI& ui) {
    std::string text;
    const bool isRead =
        isActionLogSession() ? readDescriptionFromLog(ui, text) : readDescriptionFromCabinet(ui, text);
    if (isRead) {
        model_.parse(text);
    }
    return isRead;
}

bool Installer::readDescriptionFromLog(InstallerUI& ui, std::string& outText) {
    debugLog.line("Reading installation file name from action log");
    const auto path = ActionLogReader(actionLogFile.get(), debugLog).readDescriptionPath();
    if (!path) {
        debugLog.line("ERROR: Could not obtain installation file from action log. Exiting!");
        return refuseStart(ui, "the action log doesn't name a description");
    }
    debugLog.line("Reading previous installation variables");
    // Neither a few bad lines nor a log without its variables prevent uninstalling: the records are enough.
    if (!importLoggedVariables(*actionLogFile, model_.variables.store(), debugLog)) {
        debugLog.line("ERROR: Failed to read variables from log");
    }
    debugLog.line("Reading installation file");
    const int status = OUtils::readWholeFile(*path, outText, machine_.files);
    if (status != 0) {
        debugLog.line("ERROR: Failed reading installation file");
        debugLog.line("ERROR: Cannot continue due to error(s). Exiting!");
        return refuseStart(ui, *path + ": " + OUtils::readingErrorText(status));
    }
    return true;
}

bool Installer::readDescriptionFromCabinet(InstallerUI& ui, std::string& outText) {
    debugLog.line("Decompressing installation file");
    if (const auto file = cabinet.readAlias(kDescriptionAlias)) {
        outText.assign(file->content.text(), static_cast<std::size_t>(file->content.size()));
        return true;
    }
    debugLog.line("ERROR: Decompressing installation file");
    debugLog.line("ERROR: Cannot continue due to error(s). Exiting!");
    return refuseStart(ui, "the package has no readable description");
}

bool Installer::loadDefaultValues(InstallerUI& ui) {
    debugLog.line("Initializing default values");
    const std::string answers = isActionLogSession() ? std::string() : configFile;
    std::string message;
    const DefaultsOutcome outcome =
        model_.variables.loadDefaults(model_.description, answers, parameters, message);
    if (outcome == DefaultsOutcome::kBadConfiguration) {
        runOutcome.note(RunEnd::kBadAnswers, answers);
        ui.messageBox(message.c_str(), MessageKind::kInformation);
        say(ui, answers + ": " + OUtils::readingErrorText(answers_.load(answers)));
    }
    if (outcome != DefaultsOutcome::kLoaded) {
        debugLog.line(
            "ERROR: Parsing XML Default values (This may indicate wrong configuration file format)");
    }
    if (outcome == DefaultsOutcome::kNoDefaults) {
        refuseStart(ui, "the description has no default values");
    }
    if (outcome == DefaultsOutcome::kLoaded) {
        remarkOnGivenNames(ui, answers);
    }
    return outcome == DefaultsOutcome::kLoaded;
}

// Said before the first page, while the user can still stop.
void Installer::remarkOnGivenNames(InstallerUI& ui, std::string_view answersPath) {
    const bool hasAnswers = !answersPath.empty() && answers_.load(answersPath) == 0;
    const GivenNames given{parameters, programOptions_, hasAnswers ? &answers_.document() : nullptr,
                           answersPath};
    for (const std::string& line :
         remarksOnGivenNames(model_.description, model_.variables.expressions(), given)) {
        debugLog.line("WARNING: " + line);
        ui.addMessage(line);
    }
}

int Installer::runUI(InstallerUI& ui) {
    debugLog.line("Starting installation UI");
    notice_.clear();
    walk_.state().currentDialog = 0;
    int result = -1;
    try {
        result = ui.run();
    } catch (const GenericError& error) {
        reportError(ui, error.what(), error.reason());
    }
    if (result != 0) {
        walk_.state().anyFailed = true;  // the front end says next how the run ended
    }
    noteEnd();
    sayWhyNothingWasDone(ui, result);
    sayWhatStays(ui);
    debugLog.line("Ending installation UI");
    ui.finish();
    if (result != 0) {
        debugLog.line("ERROR: There were errors during the installation");
    }
    return result;
}

void Installer::say(InstallerUI& ui, std::string_view line) {
    if (model_.isGraphical()) {
        notice_.add(line);
    } else {
        ui.addMessage(line);
    }
}

// A run that failed at its work has said so; one that never came to it would end without a word.
void Installer::sayWhyNothingWasDone(InstallerUI& ui, int result) {
    const NavigationState& state = walk_.state();
    // Whoever closed the last page of a window has read it.
    if (state.mainWorkTried || state.cancelled || (model_.isGraphical() && result == 0)) {
        return;
    }
    const DialogDesc* page = model_.dialogs.getDialog(state.currentDialog, state.currentSubdialog);
    const std::string where =
        page == nullptr ? "" : " on the page \"" + std::string(page->name.view()) + "\"";
    const std::string what = isActionLogSession() ? "uninstalled" : "installed";
    say(ui, "Nothing was " + what + ": the run " + (result != 0 ? "was held" : "ended") + where);
}

// What the work itself has noted comes first.
void Installer::noteEnd() {
    const NavigationState& state = walk_.state();
    const DialogDesc* page = model_.dialogs.getDialog(state.currentDialog, state.currentSubdialog);
    const std::string_view name = page == nullptr ? std::string_view() : page->name.view();
    if (state.cancelled) {
        runOutcome.note(RunEnd::kCancelled, name);
    } else if (!state.mainWorkTried) {
        runOutcome.note(name == "RunningApps" ? RunEnd::kProgramRuns : RunEnd::kRefused, name);
    } else if (state.anyFailed) {
        runOutcome.note(RunEnd::kFailed, name);
    }
}

void Installer::reportError(InstallerUI& ui, std::string_view text, std::string_view reason) {
    debugLog.line(text);
    if (model_.isGraphical()) {
        say(ui, text);
    } else {
        // Without the line end, the console's next output would overwrite the text.
        ui.messageBox((std::string(text) + "\n").c_str(), MessageKind::kInformation);
    }
    if (!reason.empty()) {
        say(ui, reason);
    }
}

// Its name is nothing that anybody could guess.
void Installer::sayWhatStays(InstallerUI& ui) {
    if (removed.isOnlyCopy) {
        say(ui, "An earlier version was removed and isn't completely back.");
        for (const std::string& place : removed.places()) {
            say(ui, place);
        }
    }
    if (removed.isToBeContinued) {
        say(ui, "The same setup, run again, tries once more to take back what is left of this run.");
    }
}

int Installer::releaseSession() {
    cabinet.clear();
    actionLogFile.reset();
    removed.release();
    lock_.release();
    return 0;
}
