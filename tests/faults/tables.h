#pragma once

#include <set>
#include <string>
#include <vector>

#include "judge.h"
#include "operations.h"

// One row of the tables: an operation with one kind of fault at one call after the other.
struct Row {
    OperationKind operation;
    FaultPlan plan;       // without the number of the call
    bool isKill = false;  // the program ends at the call instead
    bool isTorn = false;  // in the middle of a write
    int every = 1;        // each n-th call
};

// "no-space", "no-space,lasting", "no-access,reading", "kill", "torn" ...: the word for --error.
std::string errorWord(const Row& row);
// All rows there are.
std::vector<Row> allRows();

// Runs cases, prints what they found and counts.
class Tables {
public:
    explicit Tables(const Operations& operations) : operations_(operations) {}

    // `onlyCall`: 0 for all of the row. Prints the row, and each finding before it.
    void run(const Row& row, int onlyCall = 0);
    void printHead() const;
    void printEnd() const;

    int findings() const { return findings_; }
    const std::set<std::string>& losses() const { return losses_; }

private:
    struct Counts {
        int calls = 0;
        int verdicts[kVerdictCount] = {};
        int findings = 0;  // cases that have some
        std::set<std::string> losses;
    };

    void runFaults(const Row& row, int onlyCall, Counts& counts);
    void runKills(const Row& row, int onlyCall, Counts& counts);
    void add(const Row& row, int call, const Judgement& judgement, bool isAlone, Counts& counts);
    static void printRow(const Row& row, const Counts& counts);

    const Operations& operations_;
    int calls_ = 0;
    int losingCalls_ = 0;
    int findings_ = 0;
    std::set<std::string> losses_;
};
