#pragma once

#include "description/default_values_loader.h"
#include "description/default_values_reader.h"
#include "description/dialog_reader.h"
#include "description/expressions.h"
#include "description/file_sets.h"
#include "description/predefined_variables.h"
#include "description/product_description.h"
#include "description/variable_store.h"
#include "engine/action_log_rewriter.h"
#include "engine/action_log_variables.h"
#include "engine/action_log_writer.h"
#include "engine/additional_actions.h"
#include "engine/alias_extractor.h"
#include "engine/configuration_export.h"
#include "engine/earlier_installations_scan.h"
#include "engine/file_contents.h"
#include "engine/file_installer.h"
#include "engine/file_planner.h"
#include "engine/file_replacer.h"
#include "engine/installation_records.h"
#include "engine/logged_variables.h"
#include "engine/previous_installations.h"
#include "engine/product_installer.h"
#include "engine/system_changes.h"
#include "engine/uninstaller.h"
#include "session/installation_finish.h"
#include "session/page_work.h"
#include "ui/button_actions.h"
#include "ui/control_values.h"
#include "ui/dialog_condition_check.h"
#include "ui/external_uninstall_page.h"
#include "ui/navigator.h"
#include "ui/page_conditions.h"
#include "ui/page_entry.h"
#include "ui/page_turner.h"
#include "ui/running_apps_page.h"
#include "ui/task_states.h"
#include "ui/triggers.h"

class EnvironmentAccess;
class SessionPaths;
class SystemModifications;
struct SessionState;

// What the session needs of the machine. All of it outlives the session.
struct SessionServices {
    platform::FileSystem& files;
    EnvironmentAccess& environment;
    SystemOperations& system;
    SystemModifications& modifications;
    SessionPaths& paths;
};

// The parts of a session, each over references to what it works on, in the order in which they need each
// other.
struct Collaborators {
    Collaborators(SessionState& state, SessionServices services, FileInstaller::Hook afterFileInstalled);
    Collaborators(const Collaborators&) = delete;
    Collaborators& operator=(const Collaborators&) = delete;

    PredefinedVariables predefined;
    VariableStore variables;
    Expressions expressions;
    ProductDescription product;
    FileSets fileSets;
    DialogReader dialogReader;
    ActionLogVariables logVariables;
    DefaultValuesReader defaultValues;
    DefaultValuesLoader defaultsLoader;

    ActionLogWriter logWriter;
    LoggedVariables loggedVariables;
    FileContents contents;
    AliasExtractor aliasExtractor;
    FilePlanner planner;
    FileReplacer replacer;
    FileInstaller fileInstaller;
    ActionLogRewriter rewriter;
    InstallationRecords records;
    ProductInstaller productInstaller;
    EarlierInstallationsScan scan;
    PreviousInstallations previous;
    DescriptionTags tags;
    TagContext tagContext;
    SystemChanges changes;
    AdditionalActions actions;
    Uninstaller uninstaller;
    ConfigurationExport configuration;
    InstallationFinish finish;
    PageWork work;

    ControlValues controls;
    PageConditions conditions;
    TaskStates tasks;
    Triggers triggers;
    RunningAppsPage runningApps;
    ExternalUninstallPage externalUninstall;
    PageEntry pageEntry;
    PageTurner pages;
    Navigator navigator;
    ButtonActions buttons;
    DialogConditionCheck conditionCheck;
};
