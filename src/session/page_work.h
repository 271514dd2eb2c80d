#pragma once

#include <memory>
#include <optional>
#include <string>

#include "contracts/page_actions.h"
#include "engine/earlier_installations.h"
#include "engine/external_products.h"
#include "engine/installation.h"
#include "engine/installation_mark.h"
#include "engine/overall_progress.h"
#include "engine/product_removal.h"
#include "engine/recovery.h"
#include "engine/revert.h"
#include "engine/running_programs.h"
#include "engine/uninstallation.h"

class NestedSessionFactory;
class Report;
class SessionModel;
struct DialogDesc;
struct SessionState;

// The session's side of the pages that do work. It makes the report of each job and hands the job to the
// engine.
class PageWork : public PageActions {
public:
    // All of them are borrowed and outlive this object.
    PageWork(SessionState& state, SessionModel& model, const platform::Platform& machine,
             SystemOperations& system, NestedSessionFactory& nestedSessions);

    EarlierInstallations& earlier() { return earlier_; }
    Recovery& recovery() { return recovery_; }
    Installation& installation() { return installation_; }

    // The directory that was set for the session, otherwise that of the running program, without a separator
    // at its end. Nothing when it isn't known.
    std::optional<std::string> applicationDirectory();

    bool isActionLogSession() override;
    const WizardWords& words() const override;
    void normalizeDirectoryFields() override;
    bool installProduct(InstallerUI& ui) override;
    bool prepareUninstall(InstallerUI& ui) override;
    bool uninstallCurrentProduct(InstallerUI& ui, const std::function<bool()>& isToEnd) override;
    bool uninstallPrevious(InstallerUI& ui) override;
    bool revertInstallation(InstallerUI& ui) override;
    bool revertUninstallation(InstallerUI& ui) override;
    bool registerApplication(InstallerUI& ui) override;
    bool unregisterApplication(InstallerUI& ui) override;
    // The first of these two with a report of the caller's.
    bool registerWith(Report& report);
    void runActions(std::string_view section, InstallerUI& ui) override;
    // Throws InstallerError when the published log can't be brought up to date.
    void finishInstallation(InstallerUI& ui) override;
    void prepareProgramWatch(std::int32_t page, InstallerUI& ui) override;
    std::vector<WatchedProgram> watchPrograms() override;
    std::vector<ExternalProduct> removeExternalProducts(std::int32_t page, InstallerUI& ui,
                                                        const std::function<void()>& onFirst,
                                                        const std::function<bool()>& isToEnd) override;
    bool isAnyInstalled(const std::vector<ExternalProduct>& products) override;

private:
    Report reportTo(InstallerUI& ui);
    Report reportWholeJobTo(InstallerUI& ui);
    void planInstallation();
    void planRemoval(const ExpectedRemoval& removal);
    bool isPageAhead(std::string_view name);
    void finishJob();
    void normalizeFields(DialogDesc& page);
    bool leavesConfigFile() const;
    std::vector<ExpectedRemoval> expectedRemovals();
    void revertBeforeEnd(Report& report);
    void noteFailure(std::string_view page);
    void noteRevert();
    bool removeEarlier(Report& report);
    bool tryToRemoveEarlier(Report& report);
    SystemOperations& reversibleSystem();

    SessionState& state_;
    SessionModel& model_;
    platform::Platform machine_;
    SystemOperations& system_;
    NestedSessionFactory& nestedSessions_;
    std::unique_ptr<SystemOperations> reversibleSystem_;  // on the machine of the backups, if that is open
    EarlierInstallations earlier_;
    Recovery recovery_;
    InstallationMark mark_;
    Installation installation_;
    Uninstallation uninstallation_;
    ProductRemoval removal_;
    Revert revert_;
    RunningPrograms programs_;
    ExternalProducts products_;
    OverallProgress overall_;
    bool isRegistered_ = false;  // or it was tried
    bool isFinished_ = false;    // the actions after the installation have run
};
