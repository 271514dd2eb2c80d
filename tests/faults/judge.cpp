#include "judge.h"

#include <algorithm>

#include "allowed_losses.h"
#include "platform/error_text.h"

namespace {

constexpr const char* kProduct = "/opt/tandrel/";

// The path or the name without the word before it.
std::string subjectOf(const Difference& difference) {
    const std::size_t blank = difference.place.find(' ');
    return blank == std::string::npos ? difference.place : difference.place.substr(blank + 1);
}

// As messages have it: a port without its protocol, a key or a value as a path below one of the roots.
std::string nameInMessages(const Difference& difference) {
    std::string name = subjectOf(difference);
    if (difference.place.starts_with("firewall ")) {
        return name.substr(0, name.find(' '));
    }
    if (difference.place.starts_with("registry ")) {
        name = name.substr(name.find('\\') + 1);
        std::ranges::replace(name, ':', '\\');
    }
    return name;
}

bool isRecord(const Difference& difference) {
    return difference.place.ends_with(SampleProduct::kLog) ||
           difference.place.ends_with(SampleProduct::kArchive) ||
           difference.place.find("/written-") != std::string::npos;
}

// Nothing that a user meets.
bool isInStateDirectory(const Difference& difference) {
    return difference.place.starts_with("file /var/state/");
}

// Something of the first version is missing or another one.
bool isOfEarlierVersion(const Difference& difference) {
    return !difference.expected.empty() && !isRecord(difference);
}

// Follows one case from the run with its fault to the end of the product.
class Case {
public:
    Case(const Operations& operations, OperationKind operation, const Machine& machine)
        : operations_(operations), operation_(operation), machine_(machine) {}

    Judgement judgeFault(const FaultPlan& plan);
    Judgement judgeKill();

private:
    void judgeSuccess(const RunResult& outcome);
    void judgeFailure(const FaultPlan& plan, const RunResult& outcome);
    void judgeWhatStays(const std::vector<Difference>& differences, const RunResult& outcome);
    void repeatSetup(OperationKind operation);
    void endProduct();
    bool removeAllowedFiles();
    bool isAllowed(const Difference& difference);
    bool isNamed(const Difference& difference, const RunResult& outcome) const;

    RunResult follow(OperationKind operation) {
        CallGate gate(std::string("the run after ") + nameOf(operation_));
        return Operations::run(operation, machine_, gate);
    }
    void worsen(Verdict verdict) { judgement_.verdict = std::max(judgement_.verdict, verdict); }
    void find(const std::string& text) { judgement_.findings.push_back(text); }

    const Operations& operations_;
    OperationKind operation_;
    Machine machine_;
    Judgement judgement_;
};

// The system gives no reason for the last one.
bool saysWhy(const RunResult& outcome, const FaultKind& kind, const std::string& failedCall) {
    return outcome.says(platform::errorText(kind.fileStatus)) ||
           outcome.says(platform::registryErrorText(kind.registryStatus)) ||
           (failedCall.starts_with("broadcastEnvironment") && outcome.says("known"));
}

Judgement Case::judgeFault(const FaultPlan& plan) {
    CallGate gate(std::string(nameOf(operation_)) + " with a fault at call " + std::to_string(plan.call));
    gate.setPlan(plan);
    Operations::prepareGate(operation_, gate);
    const RunResult outcome = Operations::run(operation_, machine_, gate);
    judgement_.call = gate.failedCall();
    judgement_.said = outcome.said;
    if (outcome.succeeded) {
        judgeSuccess(outcome);
    } else {
        judgeFailure(plan, outcome);
    }
    endProduct();
    return judgement_;
}

// An earlier version that couldn't go entirely leaves its records to the new one, so these may be others.
void Case::judgeSuccess(const RunResult& outcome) {
    for (const Difference& difference : differencesOf(operations_.stateAfter(operation_), machine_.state())) {
        // What a log says is seen when the product goes.
        const bool isContinued =
            isRecord(difference) && (operation_ == OperationKind::kUpgrade || !difference.found.empty());
        if (!isContinued && !isAllowed(difference) && !isNamed(difference, outcome)) {
            find("The run says that it succeeded, but " + difference.text());
        }
    }
}

void Case::judgeFailure(const FaultPlan& plan, const RunResult& outcome) {
    const std::vector<Difference> before =
        differencesOf(operations_.stateBefore(operation_), machine_.state());
    const std::vector<Difference> after = differencesOf(operations_.stateAfter(operation_), machine_.state());
    const bool isRevert = operation_ == OperationKind::kRevert;
    // A revert comes after a failure that was said before.
    const bool isBack = isRevert && std::ranges::all_of(before, isInStateDirectory);
    if (!isBack && !saysWhy(outcome, plan.kind, judgement_.call)) {
        find("The run doesn't say why it failed");
    }
    // What the next run brings back, and it is judged whether it does, needn't be named piece by piece.
    const bool isToBeContinued = outcome.says("The same setup, run again, tries once more");
    if (operation_ != OperationKind::kUninstall && !isToBeContinued) {
        judgeWhatStays(before.size() <= after.size() ? before : after, outcome);
    }
    worsen(before.empty() ? Verdict::kTakenBack : Verdict::kRepaired);
    const bool isUpgrade = operation_ == OperationKind::kUpgrade || operation_ == OperationKind::kRevert;
    if (isToBeContinued || (isUpgrade && std::ranges::any_of(before, isOfEarlierVersion))) {
        repeatSetup(isUpgrade ? OperationKind::kUpgrade : operation_);
    }
}

// The next run takes up what is left of this one.
void Case::repeatSetup(OperationKind operation) {
    const RunResult outcome = follow(operation);
    if (outcome.succeeded != (operation != OperationKind::kRevert)) {
        find("The same setup, run again, ends otherwise than it should");
        for (const std::string& line : outcome.said) {
            find("  it says: " + line);
        }
    }
    for (const Difference& difference : differencesOf(operations_.stateAfter(operation), machine_.state())) {
        if (!isRecord(difference) && !isAllowed(difference)) {
            find("After the same setup " + difference.text());
        }
    }
}

// What the records say is seen when the product goes.
void Case::judgeWhatStays(const std::vector<Difference>& differences, const RunResult& outcome) {
    for (const Difference& difference : differences) {
        const bool isOtherRecord = isRecord(difference) && !difference.found.empty();
        if (!isOtherRecord && !isAllowed(difference) && !isNamed(difference, outcome)) {
            find("Nobody says it: " + difference.text());
        }
    }
}

bool Case::isAllowed(const Difference& difference) {
    const AllowedLoss* loss = allowedLoss(difference, judgement_.call);
    if (loss != nullptr) {
        judgement_.losses.insert(loss->name);
        worsen(Verdict::kLoss);
    }
    return loss != nullptr;
}

// By itself, or by a directory or key that it is in.
bool Case::isNamed(const Difference& difference, const RunResult& outcome) const {
    std::string subject = nameInMessages(difference);
    for (std::size_t end = subject.size(); end != std::string::npos && end > 0;
         end = subject.find_last_of("/\\:")) {
        subject.resize(end);
        if (outcome.namesPath(subject)) {
            return true;
        }
    }
    return false;
}

// Whatever is there now, an uninstallation ends it. One that fails because of what is allowed to stay has to
// succeed once that has been taken away.
void Case::endProduct() {
    RunResult outcome{true, false, {}};
    for (int runs = 0; runs < 2 && machine_.fakes.files.hasFile(SampleProduct::kLog); ++runs) {
        outcome = follow(OperationKind::kUninstall);
        if (outcome.succeeded || !removeAllowedFiles()) {
            break;
        }
    }
    const std::vector<Difference> left = differencesOf(operations_.cleanState(), machine_.state());
    const bool isDone = std::ranges::all_of(left, [this](const auto& place) { return isAllowed(place); });
    if (!outcome.succeeded && !isDone) {
        find("The uninstallation afterwards fails");
        for (const std::string& line : outcome.said) {
            find("  it says: " + line);
        }
    }
    for (const Difference& difference : left) {
        if (!isAllowed(difference)) {
            find("After the uninstallation " + difference.text());
        }
    }
}

// Those of a product that is in their way. False when there are none.
bool Case::removeAllowedFiles() {
    bool isAnyGone = false;
    for (const Difference& difference : differencesOf(operations_.cleanState(), machine_.state())) {
        const std::string path = subjectOf(difference);
        if (path.starts_with(kProduct) && isAllowed(difference)) {
            isAnyGone = machine_.fakes.files.removeFile(path) == 0 || isAnyGone;
        }
    }
    return isAnyGone;
}

Judgement Case::judgeKill() {
    judgement_.verdict = Verdict::kRepaired;
    if (machine_.state() == operations_.stateBefore(operation_)) {
        judgement_.verdict = Verdict::kTakenBack;
    }
    if (operation_ == OperationKind::kUninstall) {
        judgement_.call = kKilledUninstallation;
    } else {
        repeatSetup(operation_);
    }
    endProduct();
    return judgement_;
}

}  // namespace

Judgement judgeFault(const Operations& operations, OperationKind operation, const FaultPlan& plan) {
    return Case(operations, operation, operations.machineBefore(operation)).judgeFault(plan);
}

Judgement judgeKill(const Operations& operations, OperationKind operation, const Machine& machine) {
    return Case(operations, operation, machine).judgeKill();
}
