#pragma once

#include <string>

class ActionLogRewriter;
class ConfigurationExport;
class InstallerUI;
class LoggedVariables;
class ProductDescription;
class SessionPaths;
class AdditionalActions;
struct SessionState;

// What is left to do when the files are installed: the last actions, the variables of the action log, and the
// configuration file that repeats the run.
class InstallationFinish {
public:
    struct Parts {
        AdditionalActions& actions;
        const ProductDescription& product;
        const LoggedVariables& variables;
        ActionLogRewriter& rewriter;
        ConfigurationExport& configuration;
        SessionPaths& paths;
    };

    // All of them outlive this object.
    InstallationFinish(SessionState& state, Parts parts) : state_(state), parts_(parts) {}

    // Does its work once in a session; later calls do nothing. Always 0: actions that fail and a
    // configuration file that can't be written don't fail the installation. Throws InstallerError when the
    // action log can't be brought up to date; nothing is exported then. `ui` may be null, and isn't told
    // anything then.
    int finishInstallation(InstallerUI* ui);

private:
    void rewriteActionLog();
    bool leavesConfigFile();
    std::string configFilePath();
    void exportConfiguration(InstallerUI* ui);

    SessionState& state_;
    Parts parts_;
};
