#include "product_life.h"

#include "product_runs.h"
#include "session/session_flags.h"
#include "user_acts.h"

namespace {

constexpr const char* kPackage = "/kit/package";
constexpr const char* kLogCopy = "/kit/install.log";
// More calls of one kind than that are rare.
constexpr int kMostCalls = 60;
constexpr int kFileOperations = static_cast<int>(MemoryFileSystem::Operation::kTakeDirectoryRights) + 1;
constexpr int kRegistryOperations = static_cast<int>(MemoryRegistry::Operation::kDeleteValue) + 1;

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

}  // namespace

ProductLife::ProductLife(const ProductCase& product)
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
    packProduct(machine_, product, describe(product), kPackage);
    start_ = takeState(machine_);
    noteVictims();
}

ProductLife::Outcome ProductLife::install() {
    Outcome outcome;
    outcome.finished = runSession(platform_, kPackage, kSessionBackup, outcome.result);
    return outcome;
}

ProductLife::Outcome ProductLife::uninstall() {
    Outcome outcome;
    if (machine_.files.hasFile(kLog)) {
        machine_.files.addFile(kLogCopy, machine_.files.content(kLog));
        outcome.finished = runSession(platform_, kLogCopy, kSessionActionLog, outcome.result);
        machine_.files.removeFile(kLogCopy);
    } else {
        outcome.finished = runSession(platform_, kLog, kSessionActionLog, outcome.result);
    }
    return outcome;
}

void ProductLife::use() {
    useMachine(machine_, product_);
    noteVictims();
}

void ProductLife::setFault() {
    const int operation = product_.operation % (kFileOperations + kRegistryOperations);
    const int number = product_.point % kMostCalls + 1;
    if (operation < kFileOperations) {
        machine_.files.failAt(static_cast<MemoryFileSystem::Operation>(operation), "", number);
    } else {
        machine_.registry.failAt(static_cast<MemoryRegistry::Operation>(operation - kFileOperations), number);
    }
}

void ProductLife::fillDisk() {
    machine_.files.setFreeSpace(product_.point);
}

void ProductLife::clearFaults() {
    machine_.files.clearFaults();
    machine_.registry.clearFaults();
}

void ProductLife::spoilRecords() {
    MemoryFileSystem& files = machine_.files;
    switch (product_.course) {
        case Course::kLoseArchive:
            files.removeFile(kArchive);
            break;
        case Course::kLoseLog:
            files.removeFile(kLog);
            break;
        case Course::kDamageArchive:
        case Course::kCutArchive:
            spoil(files, kArchive, product_.course == Course::kCutArchive, product_.point);
            break;
        case Course::kDamageLog:
        case Course::kCutLog:
            spoil(files, kLog, product_.course == Course::kCutLog, product_.point);
            break;
        default:
            break;
    }
}

bool ProductLife::isListed() {
    for (const auto& [name, value] : state().registry) {
        if (name.find("\\Uninstall\\") != std::string::npos) {
            return true;
        }
    }
    return false;
}

void ProductLife::noteVictims() {
    for (const std::string& path : machine_.files.allFiles()) {
        if (path.starts_with("/others/")) {
            victims_[path] = victim(path);
        }
    }
}

std::string ProductLife::victim(const std::string& path) const {
    return machine_.files.hasFile(path)
               ? (machine_.files.isPrivate(path) ? "private " : "") + machine_.files.content(path)
               : "nothing";
}

std::vector<std::string> ProductLife::changedVictims() const {
    std::vector<std::string> changed;
    for (const auto& [path, content] : victims_) {
        if (victim(path) != content) {
            changed.push_back(path);
        }
    }
    return changed;
}
