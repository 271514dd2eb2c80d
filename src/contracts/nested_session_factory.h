#pragma once

class InstallerUI;

// Makes a second session inside this process, for taking away an earlier product.
class NestedSessionFactory {
public:
    virtual ~NestedSessionFactory() = default;
    // Uninstalls `applicationName` from `logFile`, or from its registered log where that is null. 0 or the
    // result of the walk. Throws InstallerError.
    virtual int uninstallProduct(InstallerUI* ui, const char* applicationName, const char* logFile,
                                 bool withBackup) = 0;
};
