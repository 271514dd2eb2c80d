#include "round_trip.h"

#include <memory>

#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/walking_ui.h"
#include "machine_state.h"
#include "package/backup_file.h"
#include "package/backup_reader.h"
#include "package/package_writer.h"
#include "safety.h"
#include "session/session_flags.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

namespace {

constexpr const char* kPackage = "/kit/package";
constexpr const char* kLog = "/product/install.log";
constexpr const char* kLogCopy = "/kit/install.log";
constexpr const char* kArchive = "/product/backup.bin";
constexpr const char* kDescription = "/product/install.xml";
// More calls of one kind than that are rare.
constexpr int kMostCalls = 60;

void pack(FakePlatform& machine, const ProductCase& product) {
    std::vector<PackageFile> list = {{"/kit/src/install.xml", "install.xml", "install.xml"}};
    machine.files.addFile("/kit/src/install.xml", describe(product));
    const auto add = [&](const std::string& name, const std::string& content) {
        machine.files.addFile("/kit/src/" + name, content);
        list.push_back({"/kit/src/" + name, name, name});
    };
    for (const Item& item : product.items) {
        if (item.kind == ItemKind::kFile) {
            const std::string path = filePathOf(item);
            add(path.substr(path.rfind('/') + 1), installedContentOf(item));
        } else if (item.kind == ItemKind::kModifyFile) {
            list.push_back({item.name("/kit/src/change"), item.name("change"), item.name("change")});
        } else if (item.kind == ItemKind::kCreateFile) {
            add(item.name("created"), "created");
        }
    }
    PackageOptions options;
    options.stripes = 1;
    options.level = 1;
    PackageWriter(machine.files).write(list, options, kPackage);
}

// Returns whether the session came to its end, and its result.
bool runSession(platform::Platform platform, const char* path, std::uint32_t flags, int& outResult) {
    FakeConsole log;
    const DebugLog debugLog(log);
    SystemServices services(platform, debugLog);
    AnswersFile answers(platform.files);
    NestedSessions nestedSessions(debugLog);
    auto session =
        std::make_unique<Wini>(platform, services, answers, nestedSessions, debugLog, WiniArguments());
    WalkingUI ui(*session);
    if (session->loadCabinet(path, 0, flags) != 0) {
        return false;
    }
    outResult = session->run(&ui, &log);
    if (outResult == 0 && session->hasErrors()) {
        outResult = -1;
    }
    const bool finished = session->isFinished();
    session->releaseSession();
    return finished;
}

// Changes one byte of the file, or cuts it there.
void spoil(MemoryFileSystem& files, const char* path, bool cut, int point) {
    std::string content = files.content(path);
    if (content.empty()) {
        return;
    }
    const std::size_t at = static_cast<std::size_t>(point) % content.size();
    if (cut) {
        content.resize(at);
    } else {
        content[at] = static_cast<char>(content[at] ^ 0x11);
    }
    files.addFile(path, content);
}

// Whether an archive ends after an entry and without its end mark: that of an installation that was killed
// looks the same, so nobody can know that something is missing.
bool isCutBetweenEntries(MemoryFileSystem& files, const char* path) {
    BackupFile archive(files);
    if (!archive.openForReading(path)) {
        return false;
    }
    using Found = BackupReader::Found;
    BackupReader reader(archive);
    BackupEntry entry;
    Found found = reader.start() ? reader.next(entry) : Found::kDamage;
    while (found == Found::kEntry) {
        found = reader.skip(entry.size) ? reader.next(entry) : Found::kDamage;
    }
    return found == Found::kUnended;
}

// What the programs keep for themselves.
bool isOwnRecord(const std::string& path) {
    return path == kLog || path == kArchive || path.starts_with("/var/state/");
}

using Findings = std::vector<std::string>;

// One product on one machine, from its first installation to its end.
class Life {
public:
    explicit Life(const ProductCase& product);

    Findings run();

private:
    struct Outcome {
        bool finished = false;
        int result = 0;

        bool isSuccess() const { return finished && result == 0; }
    };

    Outcome install();
    Outcome uninstall();
    void setFault();
    void installFurther();
    void spoilRecords();
    Findings judgeInstallation(const Outcome& outcome);
    Findings judgeEnd(const Outcome& outcome);
    Findings judgeSafety(const Outcome& outcome);
    Findings judgeRepetition();
    Findings differencesAfterRepetition(MachineState expected);
    Findings judgeWithoutWhatStayed();
    bool isLogSpoilt() const {
        return product_.course == Course::kDamageLog || product_.course == Course::kCutLog;
    }

    const ProductCase& product_;
    FakePlatform machine_;
    DiskShellObjects shell_{machine_.files};
    platform::Platform platform_;
    MachineState start_;
    bool wasFaultSet_ = false;
    bool isCutUnnoticed_ = false;
};

Life::Life(const ProductCase& product)
    : product_(product),
      platform_{machine_.files,
                machine_.registry,
                machine_.processes,
                machine_.environment,
                machine_.console,
                machine_.events,
                shell_,
                machine_.firewall} {
    machine_.files.addDirectory("/tmp");
    prepareMachine(machine_, product);
    pack(machine_, product);
    start_ = takeState(machine_);
}

Life::Outcome Life::install() {
    Outcome outcome;
    outcome.finished = runSession(platform_, kPackage, kSessionBackup, outcome.result);
    return outcome;
}

// As the second stage does it, from a copy of the log.
Life::Outcome Life::uninstall() {
    Outcome outcome;
    machine_.files.addFile(kLogCopy, machine_.files.content(kLog));
    if (isLogSpoilt()) {
        spoil(machine_.files, kLogCopy, product_.course == Course::kCutLog, product_.point);
    }
    if (product_.course == Course::kFailUninstallation && !wasFaultSet_) {
        wasFaultSet_ = true;
        setFault();
    }
    outcome.finished = runSession(platform_, kLogCopy, kSessionActionLog, outcome.result);
    machine_.files.clearFaults();
    return outcome;
}

void Life::setFault() {
    const auto operation = static_cast<MemoryFileSystem::Operation>(product_.operation);
    machine_.files.failAt(operation, "", product_.point % kMostCalls + 1);
}

void Life::installFurther() {
    if (product_.course == Course::kRepair) {
        damageProduct(machine_, product_);
    }
    const int times = product_.course == Course::kInstallAgain ? product_.point % 2 + 1 : 1;
    for (int i = 0; i < times; ++i) {
        install();
    }
}

void Life::spoilRecords() {
    if (product_.course == Course::kLoseArchive) {
        machine_.files.removeFile(kArchive);
    } else if (product_.course == Course::kDamageArchive || product_.course == Course::kCutArchive) {
        spoil(machine_.files, kArchive, product_.course == Course::kCutArchive, product_.point);
        isCutUnnoticed_ =
            product_.course == Course::kCutArchive && isCutBetweenEntries(machine_.files, kArchive);
    }
}

Findings Life::run() {
    if (product_.course == Course::kFailInstallation) {
        setFault();
    } else if (product_.course == Course::kFillDisk) {
        machine_.files.setFreeSpace(product_.point);
    }
    const Outcome installed = install();
    machine_.files.clearFaults();
    machine_.files.setFreeSpace(-1);
    Findings found = judgeInstallation(installed);
    if (!found.empty() || !machine_.files.hasFile(kLog)) {
        return found;
    }
    if (product_.course == Course::kInstallAgain || product_.course == Course::kRepair) {
        installFurther();
        found = missingParts(machine_, product_);
    }
    useMachine(machine_, product_);
    spoilRecords();
    const Outcome uninstalled = uninstall();
    const Findings end = product_.course == Course::kPlain || product_.course == Course::kInstallAgain ||
                                 product_.course == Course::kRepair
                             ? judgeEnd(uninstalled)
                             : judgeSafety(uninstalled);
    found.insert(found.end(), end.begin(), end.end());
    return found;
}

// Without a fault everything goes well. With one it may not, but then it is said, and the user loses nothing.
Findings Life::judgeInstallation(const Outcome& outcome) {
    const bool isFaulty =
        product_.course == Course::kFailInstallation || product_.course == Course::kFillDisk;
    if (!isFaulty && !outcome.finished) {
        return {"The installation doesn't come to its end"};
    }
    if (!isFaulty && !machine_.files.hasFile(kLog)) {
        return {"The installation leaves no log"};
    }
    if (!isFaulty) {
        return {};
    }
    Findings found = lossesOfUser(start_, product_, takeState(machine_), false);
    if (outcome.isSuccess()) {
        const Findings missing = missingParts(machine_, product_);
        found.insert(found.end(), missing.begin(), missing.end());
        if (!machine_.files.hasFile(kLog)) {
            found.push_back("The installation reports success and leaves no log");
        }
    }
    return found;
}

Findings Life::judgeEnd(const Outcome& outcome) {
    if (!outcome.finished) {
        return {"The uninstallation doesn't come to its end"};
    }
    if (outcome.result != 0 && mayLeaveSomething(product_)) {
        return judgeWithoutWhatStayed();
    }
    Findings found = differences(expectedEnd(start_, product_), takeState(machine_));
    if (outcome.result != 0) {
        found.push_back("The uninstallation reports an error");
    }
    return found;
}

// A directory that stays because of a file in it makes the walk a failure, which can be repeated once the
// file has been moved.
Findings Life::judgeWithoutWhatStayed() {
    if (!machine_.files.hasFile(kLog)) {
        return {"The uninstallation failed and can't be repeated: its log is gone"};
    }
    Findings found;
    MachineState expected = expectedEnd(start_, product_);
    std::erase_if(expected.files, [&](const auto& file) {
        const auto& [path, content] = file;
        if (start_.files.contains(path)) {
            return false;
        }
        if (machine_.files.content(path) != content) {
            found.push_back("A file that was to stay is lost: " + path);
        }
        machine_.files.removeFile(path);
        return true;
    });
    if (!uninstall().isSuccess()) {
        found.push_back("The second uninstallation reports an error");
    }
    const Findings end = differencesAfterRepetition(expected);
    found.insert(found.end(), end.begin(), end.end());
    return found;
}

// A damaged log is taken for what it says. Of everything else a success is true, and after a failure it can
// be done again.
Findings Life::judgeSafety(const Outcome& outcome) {
    Findings found = lossesOfUser(start_, product_, takeState(machine_), true);
    if (isLogSpoilt() || isCutUnnoticed_ || product_.course == Course::kFailInstallation ||
        product_.course == Course::kFillDisk) {
        return found;
    }
    if (outcome.isSuccess()) {
        for (const std::string& line : differences(expectedEnd(start_, product_), takeState(machine_))) {
            found.push_back("The uninstallation reports success, but: " + line);
        }
    } else if (product_.course == Course::kFailUninstallation) {
        const Findings again = judgeRepetition();
        found.insert(found.end(), again.begin(), again.end());
    } else if (!machine_.files.hasFile(kLog)) {
        found.push_back("The uninstallation failed and can't be repeated: its log is gone");
    }
    return found;
}

Findings Life::differencesAfterRepetition(MachineState expected) {
    MachineState state = takeState(machine_);
    forgetEqualEntries(product_, expected);
    forgetEqualEntries(product_, state);
    Findings found;
    for (const std::string& line : differences(expected, state)) {
        found.push_back("After a second uninstallation: " + line);
    }
    return found;
}

// Once the uninstaller has gone, in the last steps, nothing but the log and the archive may be left to
// delete.
Findings Life::judgeRepetition() {
    if (!machine_.files.hasFile(kDescription)) {
        MachineState found = takeState(machine_);
        std::erase_if(found.files, [](const auto& file) { return isOwnRecord(file.first); });
        found.directories.erase("/product");
        return differences(expectedEnd(start_, product_), found);
    }
    if (!machine_.files.hasFile(kLog)) {
        return {"The uninstallation failed and can't be repeated: its log is gone"};
    }
    const Outcome again = uninstall();
    if (again.isSuccess()) {
        return differencesAfterRepetition(expectedEnd(start_, product_));
    }
    return mayLeaveSomething(product_) ? judgeWithoutWhatStayed()
                                       : Findings{"The second uninstallation reports an error"};
}

}  // namespace

std::vector<std::string> runRoundTrip(const ProductCase& product) {
    return Life(product).run();
}

ProductCase shrink(ProductCase failing) {
    for (std::size_t i = 0; i < failing.items.size();) {
        ProductCase smaller = failing;
        smaller.items.erase(smaller.items.begin() + static_cast<std::ptrdiff_t>(i));
        if (runRoundTrip(smaller).empty()) {
            ++i;
        } else {
            failing = std::move(smaller);
        }
    }
    const auto keepIfFailing = [&failing](ProductCase smaller) {
        if (!runRoundTrip(smaller).empty()) {
            failing = std::move(smaller);
        }
    };
    for (bool ProductCase::*circumstance :
         {&ProductCase::foreignFile, &ProductCase::firewallOff, &ProductCase::registers}) {
        ProductCase smaller = failing;
        smaller.*circumstance = false;
        keepIfFailing(std::move(smaller));
    }
    for (const int point : {0, failing.point / 2}) {
        ProductCase smaller = failing;
        smaller.point = point;
        keepIfFailing(std::move(smaller));
    }
    for (std::size_t i = 0; i < failing.items.size(); ++i) {
        for (bool Item::*property : {&Item::option, &Item::earlier, &Item::touched}) {
            ProductCase smaller = failing;
            smaller.items[i].*property = false;
            keepIfFailing(std::move(smaller));
        }
        for (std::size_t line = failing.items[i].lines.size(); line > 0; --line) {
            ProductCase smaller = failing;
            std::vector<std::string>& lines = smaller.items[i].lines;
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(line) - 1);
            keepIfFailing(std::move(smaller));
        }
    }
    return failing;
}
