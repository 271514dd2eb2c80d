#pragma once

#include <string>

#include "engine/engine_parts.h"
#include "engine/removal_backups.h"
#include "engine/report.h"

class NestedSession;
class NestedSessionFactory;
struct ProductRecords;

// Takes another installation away within this session, by its action log: as its own uninstaller would, but
// with what an installation needs to bring it back.
class ProductRemoval {
public:
    struct Request {
        std::string applicationName;
        std::string logPath;        // empty: the one that the list of installed applications knows
        bool isBackedUp = false;    // its files are saved first
        bool isReversible = false;  // the removal can be taken back
    };

    // All of them are borrowed and outlive this object.
    ProductRemoval(const EngineParts& parts, NestedSessionFactory& sessions, RemovalBackups& backups,
                   ErrorList& errors);

    // Removes the product. What brings it back is added to the backups before the first change. False when
    // anything couldn't be removed, which has been reported; its records are still there then. Throws
    // InstallerError when the removal can't begin, and GenericError when an action of the product ends it;
    // what was removed until then stays so.
    bool remove(const Request& request, Report& report);

private:
    std::string findLog(const Request& request);
    std::string copyLog(const Request& request, const std::string& log);
    void applyOverrides(NestedSession& session, const std::string& applicationName);
    void backUp(NestedSession& session, const std::string& log, Report& report);
    std::string newName(const char* purpose);
    void noteForLaterRuns(const Request& request, const std::string& log);
    void keepRecords(const ProductRecords& records, Report& report);
    void continueDirectories(const std::string& copy, const std::string& log);
    void removeRecords(const ProductRecords& records, const platform::Platform& machine);

    EngineParts parts_;
    NestedSessionFactory& sessions_;
    RemovalBackups& backups_;
    ErrorList& errors_;
};
