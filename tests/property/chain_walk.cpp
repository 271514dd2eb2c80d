#include "chain_walk.h"

#include <algorithm>
#include <map>

#include "machine_state.h"
#include "product_life.h"
#include "product_runs.h"
#include "safety.h"
#include "session/session_flags.h"
#include "survey_judge.h"
#include "user_acts.h"

namespace {

using Findings = std::vector<std::string>;
using Kind = ChainStep::Kind;

constexpr const char* kLogCopy = "/kit/install.log";

// A product with versions on one machine.
class ChainMachine {
public:
    struct Outcome {
        bool isFinished = false;
        int result = 0;

        bool isSuccess() const { return isFinished && result == 0; }
    };

    explicit ChainMachine(const VersionChain& chain) : chain_(chain) {
        machine_.files.addDirectory("/tmp");
        prepareMachine(machine_, allItems(chain));
        if (chain.isBare) {
            using platform::RegistryRoot;
            using platform::RegistryView;
            std::string key = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
            for (; key != "Software"; key.resize(key.rfind('\\'))) {
                machine_.registry.deleteKey(RegistryRoot::kLocalMachine, key, RegistryView::kNative);
            }
            machine_.registry.deleteKey(RegistryRoot::kLocalMachine, "Software\\Present",
                                        RegistryView::kNative);
            machine_.registry.deleteKey(RegistryRoot::kLocalMachine, "Software", RegistryView::kNative);
        }
        start_ = takeState(machine_);
    }

    Outcome install(const Release& release, bool hasBackup) {
        const ProductCase& product = versionOf(release.number);
        const std::string package = "/kit/package" + std::to_string(release.number) +
                                    (release.removesEarlier ? "r" : "") + (release.fails ? "f" : "");
        if (!machine_.files.hasFile(package)) {
            packProduct(machine_, product, describe(product, release), package);
        }
        Outcome outcome;
        outcome.isFinished =
            runSession(platform_, package, hasBackup ? std::uint32_t{kSessionBackup} : 0, outcome.result);
        return outcome;
    }
    Outcome uninstall() {
        machine_.files.addFile(kLogCopy, machine_.files.content(ProductLife::kLog));
        Outcome outcome;
        outcome.isFinished = runSession(platform_, kLogCopy, kSessionActionLog, outcome.result);
        machine_.files.removeFile(kLogCopy);
        return outcome;
    }
    // What the product and its user do with this version.
    void use(int version) {
        for (const Item& item : versionOf(version).items) {
            if (item.kind == ItemKind::kCleaning) {
                machine_.files.addFile(placeOf(item) + "/sub/b.tmp", "filled");
            } else if (item.kind == ItemKind::kFile && item.touched && !item.option) {
                machine_.files.addFile(placeOf(item), kUsersContent);
            }
        }
    }

    const ProductCase& versionOf(int number) const {
        return chain_.versions[static_cast<std::size_t>(number) - 1];
    }
    bool isInstalled() const { return machine_.files.hasFile(ProductLife::kLog); }
    MachineState state() { return takeState(machine_); }
    const MachineState& start() const { return start_; }
    MemoryPlatform& machine() { return machine_; }
    // What the programs should have taken along.
    Findings leftovers();

private:
    const VersionChain& chain_;
    MemoryPlatform machine_;
    DiskShellObjects shell_{machine_.files};
    platform::Platform platform_{machine_.files,
                                 machine_.registry,
                                 machine_.processes,
                                 machine_.environment,
                                 machine_.console,
                                 machine_.events,
                                 shell_,
                                 machine_.firewall};
    MachineState start_;
};

Findings ChainMachine::leftovers() {
    Findings found;
    for (const auto& [path, what] : machine_.files.everything()) {
        const bool isTemporary = path.starts_with("/tmp/");
        if (isTemporary || path.starts_with("/var")) {
            found.push_back("Left over: " + path);
        }
    }
    return found;
}

// Records say how the product came there; the rest of a machine doesn't.
MachineState withoutRecords(MachineState state) {
    const auto isRecord = [](const auto& file) {
        return file.first == ProductLife::kLog || file.first == ProductLife::kArchive ||
               file.first == "/product/install.xml" || file.first.starts_with("/var/");
    };
    std::erase_if(state.files, isRecord);
    std::erase_if(state.rights, isRecord);
    // An earlier version may have left it more keys.
    std::erase_if(state.registry,
                  [](const auto& entry) { return entry.first.ends_with(":TandrelCreatedLevels"); });
    return state;
}

class ChainWalk {
public:
    explicit ChainWalk(const VersionChain& chain) : chain_(chain), life_(chain) {}

    Findings run();

private:
    void take(const ChainStep& step);
    void install(const ChainStep& step, bool removesEarlier);
    void fail(const ChainStep& step, bool removesEarlier);
    void uninstall();
    void removeInstalled();
    const MachineState& freshState(int version);
    void compare(const MachineState& expected, const MachineState& found);
    void find(const std::string& text) { findings_.push_back(where_ + text); }

    const VersionChain& chain_;
    ChainMachine life_;
    std::map<int, MachineState> fresh_;
    int version_ = 0;  // the one that was installed last
    std::string where_;
    Findings findings_;
};

Findings ChainWalk::run() {
    int number = 0;
    for (const ChainStep& step : chain_.steps) {
        where_ = "After step " + std::to_string(++number) + ": ";
        take(step);
        if (!findings_.empty()) {
            return findings_;
        }
    }
    where_ = "In the end: ";
    uninstall();
    return findings_;
}

void ChainWalk::take(const ChainStep& step) {
    switch (step.kind) {
        case Kind::kInstall:
        case Kind::kInstallOver:
            install(step, step.kind == Kind::kInstall);
            break;
        case Kind::kFail:
        case Kind::kFailOver:
            fail(step, step.kind == Kind::kFail);
            break;
        case Kind::kUninstall:
            uninstall();
            break;
        case Kind::kUse:
            if (life_.isInstalled()) {
                life_.use(version_);
            }
            break;
    }
}

void ChainWalk::install(const ChainStep& step, bool removesEarlier) {
    const bool isClean = removesEarlier || !life_.isInstalled();
    if (!life_.install({step.version, removesEarlier, false}, step.hasBackup).isSuccess()) {
        find("The installation fails");
    }
    for (const std::string& line : missingParts(life_.machine(), life_.versionOf(step.version))) {
        find(line);
    }
    if (isClean) {
        compare(withoutRecords(freshState(step.version)), withoutRecords(life_.state()));
    }
    version_ = step.version;
}

void ChainWalk::fail(const ChainStep& step, bool removesEarlier) {
    const bool isOver = life_.isInstalled() && !removesEarlier;
    const MachineState before = life_.state();
    if (life_.install({step.version, removesEarlier, true}, step.hasBackup).isSuccess()) {
        find("The installation reports success in spite of its failure");
    }
    compare(isOver ? life_.start() : before, life_.state());
}

void ChainWalk::removeInstalled() {
    SurveyJudge surveys(life_.machine());
    surveys.begin();
    if (!life_.uninstall().isSuccess()) {
        find("The uninstallation fails");
    }
    for (const std::string& line : surveys.failedRecords()) {
        find(line);
    }
}

void ChainWalk::uninstall() {
    if (life_.isInstalled()) {
        removeInstalled();
    }
    compare(life_.start(), life_.state());
    for (const std::string& line : life_.leftovers()) {
        find(line);
    }
}

const MachineState& ChainWalk::freshState(int version) {
    const auto known = fresh_.find(version);
    if (known != fresh_.end()) {
        return known->second;
    }
    ChainMachine fresh(chain_);
    fresh.install({version, true, false}, true);
    return fresh_.emplace(version, fresh.state()).first->second;
}

void ChainWalk::compare(const MachineState& expected, const MachineState& found) {
    for (const std::string& line : differences(expected, found)) {
        find(line);
    }
}

}  // namespace

std::vector<std::string> walkChain(const VersionChain& chain) {
    return ChainWalk(chain).run();
}

VersionChain shrink(VersionChain failing) {
    const auto keepIfFailing = [&failing](VersionChain smaller) {
        const bool stillFails = !walkChain(smaller).empty();
        if (stillFails) {
            failing = std::move(smaller);
        }
        return stillFails;
    };
    for (std::size_t i = 0; i < failing.steps.size();) {
        VersionChain smaller = failing;
        smaller.steps.erase(smaller.steps.begin() + static_cast<std::ptrdiff_t>(i));
        i += keepIfFailing(std::move(smaller)) ? 0 : 1;
    }
    for (const Item& item : allItems(failing).items) {
        VersionChain smaller = failing;
        for (ProductCase& version : smaller.versions) {
            std::erase_if(version.items, [&](const Item& other) { return other.number == item.number; });
        }
        keepIfFailing(std::move(smaller));
    }
    for (std::size_t version = 0; version < kVersionCount; ++version) {
        for (std::size_t i = failing.versions[version].items.size(); i > 0; --i) {
            VersionChain smaller = failing;
            std::vector<Item>& items = smaller.versions[version].items;
            items.erase(items.begin() + static_cast<std::ptrdiff_t>(i) - 1);
            keepIfFailing(std::move(smaller));
        }
    }
    VersionChain smaller = failing;
    smaller.isBare = false;
    keepIfFailing(std::move(smaller));
    return failing;
}
