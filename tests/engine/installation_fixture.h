#pragma once

#include "engine/action_log_writer.h"
#include "engine/file_contents.h"
#include "engine/file_installer.h"
#include "engine/file_planner.h"
#include "engine/file_replacer.h"
#include "engine/installation_records.h"
#include "engine/logged_variables.h"
#include "engine/product_installer.h"
#include "engine_fixture.h"

// Everything that an installation needs.
class InstallationTest : public EngineTest {
protected:
    static constexpr char kUninstall[] =
        "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile>"
        "<InstallBackupFile>/app/backup.bin</InstallBackupFile>"
        "<UninstallXmlFile>/app/product.xml</UninstallXmlFile></Uninstall></Installation>";

    int install() {
        errors_.clear();
        Report report(&ui_, &errors_);
        return installer_.installProduct(report, phases_, hook_);
    }
    std::string installLog() { return files_.content("/app/install.log"); }

    std::vector<InstallationPhase> phases_;
    FileInstaller::Hook hook_;
    ErrorList errors_;
    ActionLogWriter writer_{installLog_};
    LoggedVariables logged_{variables_, exclusions_};
    FileContents contents_{cabinet_, expressions_, console_};
    FilePlanner planner_{fileSets_, expressions_, console_};
    FileReplacer replacer_{files_, system_, console_};
    FileInstaller fileInstaller_{{fileSets_, planner_, contents_, replacer_, writer_, files_}, console_};
    InstallationRecords records_{{writer_, logged_, product_, system_, files_}, console_};
    ProductInstaller installer_{{fileInstaller_, records_, variables_, controls_}, console_};
};
