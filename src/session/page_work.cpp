#include "session/page_work.h"

#include <algorithm>

#include "base/path_functions.h"
#include "contracts/installer_ui.h"
#include "contracts/nested_session.h"
#include "contracts/system_operations.h"
#include "engine/directory_check.h"
#include "engine/earlier_log.h"
#include "engine/uninstall_command.h"
#include "platform/environment.h"
#include "session/session_model.h"
#include "session/session_state.h"

namespace {

EngineParts engineParts(SessionState& state, SessionModel& model, const platform::Platform& machine,
                        SystemOperations& system) {
    return {model.view(), state.cabinet, machine, system, state.debugLog, &state.runOutcome};
}

}  // namespace

PageWork::PageWork(SessionState& state, SessionModel& model, const platform::Platform& machine,
                   SystemOperations& system, NestedSessionFactory& nestedSessions)
    : state_(state),
      model_(model),
      machine_(machine),
      system_(system),
      nestedSessions_(nestedSessions),
      earlier_(engineParts(state, model, machine, system)),
      recovery_(engineParts(state, model, machine, system), nestedSessions, state.errorList),
      mark_(engineParts(state, model, machine, system), state.removed),
      installation_(engineParts(state, model, machine, system), &mark_),
      uninstallation_(engineParts(state, model, machine, system)),
      removal_(engineParts(state, model, machine, system), nestedSessions, state.removed, state.errorList),
      revert_(engineParts(state, model, machine, system), state.removed),
      programs_(DescriptionTags(model.description, model.variables.expressions()), system),
      products_(DescriptionTags(model.description, model.variables.expressions()), system) {}

Report PageWork::reportTo(InstallerUI& ui) {
    Report report(&ui, &state_.errorList);
    report.setWords(&words());
    return report;
}

// Only a window has a bar for the whole job; on the console its progress would silence the status lines.
Report PageWork::reportWholeJobTo(InstallerUI& ui) {
    Report report = reportTo(ui);
    if (model_.isGraphical()) {
        overall_.showOn([&ui](int percent) { ui.setOverallProgress(percent); });
        report.setOverall(&overall_);
    }
    return report;
}

// Once, before the first page with work of the installation.
void PageWork::planInstallation() {
    if (!model_.isGraphical() || overall_.isPlanned()) {
        return;
    }
    if (!earlier_.wasRemovalTried()) {
        for (const ExpectedRemoval& removal : expectedRemovals()) {
            planRemoval(removal);
        }
    }
    installation_.plan(overall_);
    overall_.plan(JobStage::kRegister, OverallProgress::kStepWeight);
    overall_.plan(JobStage::kFinish, OverallProgress::kStepWeight);
}

// What the backup copies isn't known by its size; a record stands for it.
void PageWork::planRemoval(const ExpectedRemoval& removal) {
    const auto records = EarlierLog::read(machine_.files, removal.logPath).records.size();
    const std::int64_t weight = static_cast<std::int64_t>(records) * OverallProgress::kStepWeight;
    if (removal.isBackedUp) {
        overall_.plan(JobStage::kBackUp, weight);
    }
    overall_.plan(JobStage::kUndo, weight);
}

bool PageWork::isPageAhead(std::string_view name) {
    const auto isMeant = [&](const DialogDesc& page) {
        return page.name.view() == name && model_.variables.expressions().holds(page.conditionText.view());
    };
    return std::ranges::any_of(model_.dialogs.getDialogs(), [&](const DialogDesc& dialog) {
        return isMeant(dialog) || std::ranges::any_of(dialog.subDialogs, isMeant);
    });
}

// The job is done when no page with work comes after it any more.
void PageWork::finishJob() {
    if (overall_.isPlanned() && (isRegistered_ || !isPageAhead("RegisterApplication")) &&
        (isFinished_ || !isPageAhead("PostInstall"))) {
        overall_.finish();
    }
}

std::optional<std::string> PageWork::applicationDirectory() {
    if (!state_.applicationPath.empty()) {
        return state_.applicationPath;
    }
    std::string program;
    if (!machine_.environment.programPath(program)) {
        return std::nullopt;
    }
    const std::size_t separator = program.find_last_of("/\\");
    return program.substr(0, separator == std::string::npos ? 0 : separator);
}

bool PageWork::isActionLogSession() {
    return state_.isActionLogSession();
}

const WizardWords& PageWork::words() const {
    return model_.product.words();
}

void PageWork::normalizeDirectoryFields() {
    for (DialogDesc& dialog : model_.dialogs.getDialogs()) {
        normalizeFields(dialog);
        for (DialogDesc& sub : dialog.subDialogs) {
            normalizeFields(sub);
        }
    }
}

void PageWork::normalizeFields(DialogDesc& page) {
    VariableStore& variables = model_.variables.store();
    for (const DialogFieldDesc& field : page.fields) {
        const std::string_view name = field.variable.view();
        const auto value = field.type == kFieldDirectory ? variables.get(name) : std::nullopt;
        // Storing recalculates other variables, so a value that is already clean isn't stored again.
        if (value) {
            const std::string normalized = absolutePath(machine_.environment, OUtils::normalizedPath(*value));
            if (normalized != *value) {
                variables.set(name, normalized);
            }
        }
    }
}

bool PageWork::installProduct(InstallerUI& ui) {
    Report report = reportWholeJobTo(ui);
    planInstallation();
    const auto prepare = [&] {
        if (!earlier_.wasRemovalTried()) {
            removeEarlier(report);  // an old version that can't be removed doesn't stop the new one
        }
    };
    bool isInstalled = false;
    try {
        isInstalled = installation_.run(report, prepare, expectedRemovals());
    } catch (...) {
        noteFailure("CopyProgress");
        revertBeforeEnd(report);
        throw;
    }
    if (isInstalled) {
        state_.removed.isOnlyCopy = false;
        mark_.noteInstalled();
    } else {
        noteFailure("CopyProgress");
    }
    finishJob();
    return isInstalled;
}

std::vector<ExpectedRemoval> PageWork::expectedRemovals() {
    const bool isReversible = (state_.sessionFlags & kSessionBackup) != 0;
    std::vector<ExpectedRemoval> removals;
    for (const ProductRemoval::Request& request : earlier_.wanted()) {
        const std::string log = request.logPath.empty()
                                    ? system_.applicationLogFile(request.applicationName).value_or("")
                                    : request.logPath;
        removals.push_back({log, request.isBackedUp && isReversible, isReversible});
    }
    return removals;
}

// No page comes after an error that ends the session. Without an earlier version the log is enough.
void PageWork::revertBeforeEnd(Report& report) {
    if (!installation_.publishedLog().empty() && state_.removed.isOnlyCopy) {
        revert_.revertInstallation(installation_.publishedLog(), uninstallation_, report);
        noteRevert();
    }
}

// Without records and with nothing removed the work hasn't begun.
void PageWork::noteFailure(std::string_view page) {
    const bool isNothingChanged = installation_.publishedLog().empty() && state_.removed.isEmpty();
    state_.runOutcome.note(isNothingChanged ? RunEnd::kNotStarted : RunEnd::kFailed, page);
}

void PageWork::noteRevert() {
    if (revert_.tookAllBack()) {
        state_.runOutcome.noteTakenBack();
    }
}

// No page comes after an error that ends the session, so what was removed until then comes back at once.
bool PageWork::removeEarlier(Report& report) {
    try {
        return tryToRemoveEarlier(report);
    } catch (...) {
        if (!state_.removed.isEmpty()) {
            noteFailure("Uninstall");
            revert_.revertUninstallation(report);
            noteRevert();
        }
        throw;
    }
}

bool PageWork::tryToRemoveEarlier(Report& report) {
    const bool isReversible = (state_.sessionFlags & kSessionBackup) != 0;
    EarlierInstallations::Removers removers;
    removers.product = [&](ProductRemoval::Request request) {
        request.isReversible = isReversible;
        request.isBackedUp = request.isBackedUp && isReversible;
        return removal_.remove(request, report);
    };
    removers.entry = [this](const std::string& application) {
        return reversibleSystem().removeUninstallEntry(application);
    };
    return earlier_.remove(removers);
}

// What is registered after a removal is taken back with it.
SystemOperations& PageWork::reversibleSystem() {
    if (!state_.removed.isOpen()) {
        return system_;
    }
    if (reversibleSystem_ == nullptr) {
        reversibleSystem_ = nestedSessions_.makeServices(state_.removed.openMachine());
    }
    return *reversibleSystem_;
}

bool PageWork::prepareUninstall(InstallerUI& ui) {
    Report report = reportTo(ui);
    uninstallation_.prepare(state_.actionLogFile.get(), std::nullopt, report);
    return true;
}

bool PageWork::uninstallCurrentProduct(InstallerUI& ui, const std::function<bool()>& isToEnd) {
    Report report = reportWholeJobTo(ui);
    const bool isUninstalled = uninstallation_.run(state_.actionLogFile.get(), std::nullopt, report, isToEnd);
    if (!isUninstalled) {
        state_.runOutcome.note(isToEnd() ? RunEnd::kCancelled : RunEnd::kFailed, "CopyProgress");
    }
    if (overall_.isPlanned()) {
        overall_.finish();
    }
    return isUninstalled;
}

// An installation that is known to fail must not cost the earlier version.
bool PageWork::uninstallPrevious(InstallerUI& ui) {
    Report report = reportWholeJobTo(ui);
    planInstallation();
    const bool isRemoved =
        installation_.isPossible(report, expectedRemovals()) && mark_.open(report) && removeEarlier(report);
    if (!isRemoved) {
        noteFailure("Uninstall");
    }
    return isRemoved;
}

bool PageWork::revertInstallation(InstallerUI& ui) {
    Report report = reportTo(ui);
    const bool isOverEarlier = installation_.continuesEarlierRecords() && state_.removed.isEmpty();
    if (state_.removed.isEmpty()) {
        // Of a version that doesn't come back no entry may stay, which the next setup would fall over.
        uninstallation_.unregister(report);
    }
    const bool isUndone = revert_.revertInstallation(
        state_.isActionLogSession() ? "" : installation_.publishedLog(), uninstallation_, report);
    if (!isOverEarlier) {
        noteRevert();
    }
    if (isOverEarlier) {
        report.note(
            "The earlier version, over which the new one was installed, has been taken back with it. "
            "Its setup installs it again.");
    }
    return isUndone;
}

bool PageWork::revertUninstallation(InstallerUI& ui) {
    Report report = reportTo(ui);
    const bool wasNothingRemoved = revert_.revertUninstallation(report);
    if (installation_.publishedLog().empty()) {
        noteRevert();
    }
    return wasNothingRemoved;
}

bool PageWork::registerApplication(InstallerUI& ui) {
    Report report = reportWholeJobTo(ui);
    report.beginStage(JobStage::kRegister);
    const bool isRegistered = registerWith(report);
    if (!isRegistered) {
        state_.runOutcome.note(RunEnd::kFailed, "RegisterApplication");
    }
    isRegistered_ = true;
    finishJob();
    return isRegistered;
}

bool PageWork::registerWith(Report& report) {
    const auto entry = applicationEntryOf(model_.product, state_.debugLog);
    if (!entry) {
        return false;
    }
    SystemOperations& system = reversibleSystem();
    const bool isRegistered = system.registerApplication(*entry);
    if (!isRegistered) {
        report.note("FAILED to enter " + entry->name +
                    " in the list of installed applications. The same setup, run again, does it.");
        report.addKnownReason(entry->name, system.entryFault());
        if (const int status = state_.removed.journal().failure(); status > 0) {
            report.addReason(state_.removed.journal().directory(), status);
        }
    }
    return isRegistered;
}

bool PageWork::unregisterApplication(InstallerUI& ui) {
    Report report = reportTo(ui);
    return uninstallation_.unregister(report);
}

void PageWork::runActions(std::string_view section, InstallerUI& ui) {
    Report report = reportTo(ui);
    installation_.runActions(section, report);
}

// Only answers that a person gave on the console are worth saving in a file.
bool PageWork::leavesConfigFile() const {
    return !model_.isGraphical() && !state_.isUnattended && state_.configFile.empty();
}

void PageWork::finishInstallation(InstallerUI& ui) {
    Report report = reportWholeJobTo(ui);
    report.beginStage(JobStage::kFinish);
    installation_.finish(report, leavesConfigFile(), applicationDirectory());
    isFinished_ = true;
    finishJob();
}

void PageWork::prepareProgramWatch(std::int32_t page, InstallerUI& ui) {
    Report report = reportTo(ui);
    programs_.enterPage(page,
                        [&](std::string_view container) { installation_.runActions(container, report); });
}

std::vector<WatchedProgram> PageWork::watchPrograms() {
    std::vector<WatchedProgram> programs;
    for (RunningPrograms::Program& program : programs_.look()) {
        programs.push_back({std::move(program.name), program.isRunning});
    }
    return programs;
}

std::vector<ExternalProduct> PageWork::removeExternalProducts(std::int32_t page, InstallerUI& ui,
                                                              const std::function<void()>& onFirst,
                                                              const std::function<bool()>& isToEnd) {
    Report report = reportTo(ui);
    return products_.uninstallAll(page, report, onFirst, isToEnd);
}

bool PageWork::isAnyInstalled(const std::vector<ExternalProduct>& products) {
    return products_.isAnyInstalled(products);
}
