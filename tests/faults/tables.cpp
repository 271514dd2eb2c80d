#include "tables.h"

#include <cstdio>

std::string errorWord(const Row& row) {
    if (row.isKill) {
        return row.isTorn ? "torn" : "kill";
    }
    return std::string(row.plan.kind.name) + (row.plan.lasting ? ",lasting" : "") +
           (row.plan.callClass == CallClass::kReading ? ",reading" : "");
}

std::vector<Row> allRows() {
    std::vector<Row> rows;
    for (const OperationKind operation : kOperations) {
        for (const FaultKind& kind : kFaultKinds) {
            rows.push_back({operation, {CallClass::kChanging, 0, false, kind}});
            rows.push_back({operation, {CallClass::kChanging, 0, true, kind}});
        }
        for (const FaultKind& kind : {kFaultKinds[1], kFaultKinds[2]}) {
            rows.push_back({operation, {CallClass::kReading, 0, false, kind}});
        }
        rows.push_back({operation, {}, true, false});
        rows.push_back({operation, {}, true, true});
    }
    return rows;
}

void Tables::run(const Row& row, int onlyCall) {
    Counts counts;
    if (row.isKill) {
        runKills(row, onlyCall, counts);
    } else {
        runFaults(row, onlyCall, counts);
    }
    printRow(row, counts);
    calls_ += counts.calls;
    losingCalls_ += counts.verdicts[static_cast<int>(Verdict::kLoss)];
    findings_ += counts.findings;
    losses_.insert(counts.losses.begin(), counts.losses.end());
}

void Tables::runFaults(const Row& row, int onlyCall, Counts& counts) {
    const int first = onlyCall > 0 ? onlyCall : 1;
    const int last = onlyCall > 0 ? onlyCall : operations_.countCalls(row.operation, row.plan.callClass);
    for (int call = first; call <= last; call += row.every) {
        FaultPlan plan = row.plan;
        plan.call = call;
        add(row, call, judgeFault(operations_, row.operation, plan), onlyCall > 0, counts);
    }
}

void Tables::runKills(const Row& row, int onlyCall, Counts& counts) {
    Machine machine(operations_.machineBefore(row.operation));
    CallGate gate(std::string(nameOf(row.operation)) + " with an end at a call");
    Operations::prepareGate(row.operation, gate);
    gate.setWatcher([&](int number, const std::string& call, bool isTorn) {
        const bool isWanted = onlyCall > 0 ? number == onlyCall : (number - 1) % row.every == 0;
        if (isWanted && isTorn == row.isTorn) {
            Judgement judgement = judgeKill(operations_, row.operation, machine);
            judgement.call = call;
            add(row, number, judgement, onlyCall > 0, counts);
        }
    });
    Operations::run(row.operation, machine, gate);
}

void Tables::add(const Row& row, int call, const Judgement& judgement, bool isAlone, Counts& counts) {
    const bool isFine = judgement.findings.empty();
    ++counts.calls;
    if (isFine) {
        ++counts.verdicts[static_cast<int>(judgement.verdict)];
    } else {
        ++counts.findings;
    }
    counts.losses.insert(judgement.losses.begin(), judgement.losses.end());
    if (!isFine || isAlone) {
        std::printf("%s --only %s --error %s --call %d (%s)\n", isFine ? "case" : "FINDING",
                    nameOf(row.operation), errorWord(row).c_str(), call, judgement.call.c_str());
    }
    for (const std::string& finding : judgement.findings) {
        std::printf("  %s\n", finding.c_str());
    }
    if (isAlone) {
        for (const std::string& line : judgement.said) {
            std::printf("  said: %s\n", line.c_str());
        }
    }
    std::fflush(stdout);
}

void Tables::printHead() const {
    std::printf("%-10s %-20s %6s %8s %10s %8s %6s %8s  %s\n", "operation", "error", "calls", "unharmed",
                "taken back", "repaired", "losses", "findings", "named losses");
}

void Tables::printRow(const Row& row, const Counts& counts) {
    std::string names;
    for (const std::string& name : counts.losses) {
        names += (names.empty() ? "" : ", ") + name;
    }
    std::printf("%-10s %-20s %6d %8d %10d %8d %6d %8d  %s\n", nameOf(row.operation), errorWord(row).c_str(),
                counts.calls, counts.verdicts[0], counts.verdicts[1], counts.verdicts[2], counts.verdicts[3],
                counts.findings, names.c_str());
    std::fflush(stdout);
}

void Tables::printEnd() const {
    std::printf(
        "%d calls tried, %d states recovered, %d more but for a loss that the manual names, %d findings\n",
        calls_, calls_ - losingCalls_ - findings_, losingCalls_, findings_);
}
