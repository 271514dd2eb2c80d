#pragma once

#include "engine/installation.h"
#include "engine_fixture.h"

// Everything that an installation needs.
class InstallationTest : public EngineTest {
protected:
    static constexpr char kUninstall[] =
        "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile>"
        "<InstallBackupFile>/app/backup.bin</InstallBackupFile>"
        "<UninstallXmlFile>/app/product.xml</UninstallXmlFile></Uninstall></Installation>";

    bool install() {
        errors_.clear();
        Report report(&ui_, &errors_);
        return installation_.run(report);
    }
    std::string installLog() { return files_.content("/app/install.log"); }

    Installation installation_{parts_};
};
