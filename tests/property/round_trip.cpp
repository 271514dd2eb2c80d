#include "round_trip.h"

#include <algorithm>

#include "expected_end.h"
#include "product_life.h"
#include "safety.h"
#include "survey_judge.h"
#include "user_acts.h"

namespace {

using Findings = std::vector<std::string>;
using Outcome = ProductLife::Outcome;

void append(Findings& findings, const Findings& others, const std::string& start = "") {
    for (const std::string& line : others) {
        findings.push_back(start + line);
    }
}

// What the programs keep for themselves, and what a repetition of an uninstallation needs.
bool isOwnRecord(const std::string& path) {
    return path == ProductLife::kLog || path == ProductLife::kArchive || path == "/product/install.xml" ||
           path.starts_with("/product/change") || path.starts_with("/var/state/");
}

// Its page comes after the walk here, so that it is the very last.
bool isOfListEntry(const std::string& name) {
    return name.find("\\Uninstall\\Demo") != std::string::npos;
}

// Lets a product live from its first installation to its end, and judges what the runs do and say.
class RoundTrip {
public:
    explicit RoundTrip(const ProductCase& product) : product_(product), life_(product) {}

    Findings run();

private:
    // Each adds to `findings_`.
    void install();
    void installFurther();
    void spoil();
    void uninstall();
    void judgeLosses(bool isUsed);
    void judgeEnd(const Outcome& outcome);
    void judgeFailure(const Outcome& outcome);
    void judgeFirstOfTwo(const Outcome& outcome);
    void judgeRepetition();
    void judgeNothingDone(const Outcome& outcome, const MachineState& before);
    void judgeArchivedFiles();

    void expectToBeRepeatable();
    void expectState(MachineState expected);
    void removeWhatStays();
    void removeWhatActionsLeave();
    Promise promise() const;
    bool isEither(Course first, Course second) const {
        return product_.course == first || product_.course == second;
    }
    void find(const std::string& line) { findings_.push_back(line); }

    const ProductCase& product_;
    ProductLife life_;
    bool isRepeated_ = false;  // the uninstallation
    Findings findings_;
};

// A product that is installed again continues what is left of spoilt records, so that they look whole again.
Promise RoundTrip::promise() const {
    const Promise promise = promiseOf(product_.course);
    const bool isSpoilt = promise == Promise::kFailure || promise == Promise::kNothingDone ||
                          product_.course == Course::kLoseArchive;
    return isSpoilt && product_.reinstalled ? Promise::kNoLoss : promise;
}

Findings RoundTrip::run() {
    install();
    if (!findings_.empty() || !life_.machine().files.hasFile(ProductLife::kLog)) {
        return findings_;
    }
    installFurther();
    life_.use();
    spoil();
    if (findings_.empty()) {
        uninstall();
    }
    return findings_;
}

// Without a fault everything goes well, but for what is refused. With one it may not, but then it is said,
// and the user loses nothing.
void RoundTrip::install() {
    const bool isFaulty = isEither(Course::kFailInstallation, Course::kFillDisk);
    if (product_.course == Course::kFailInstallation) {
        life_.setFault();
    } else if (product_.course == Course::kFillDisk) {
        life_.fillDisk();
    }
    const Outcome outcome = life_.install();
    life_.clearFaults();
    judgeLosses(false);
    const bool isRefusal = std::ranges::any_of(product_.items, isRefused);
    const bool hasLog = life_.machine().files.hasFile(ProductLife::kLog);
    if (outcome.isSuccess()) {
        append(findings_, missingParts(life_.machine(), product_));
        append(findings_, SurveyJudge(life_.machine()).incompleteRecords());
        if (isRefusal || !hasLog) {
            find("The installation reports success and has left something out");
        }
    } else if (!isFaulty && (!isRefusal || !outcome.finished || !hasLog)) {
        find("The installation fails");
    }
    for (const auto& [path, rights] : life_.state().rights) {
        if (rights != "private") {
            find("A file has " + rights + ": " + path);
        }
    }
}

void RoundTrip::installFurther() {
    if (!isEither(Course::kInstallAgain, Course::kRepair)) {
        return;
    }
    if (product_.course == Course::kRepair) {
        damageProduct(life_.machine(), product_);
    }
    const int times = product_.course == Course::kInstallAgain ? product_.point % 2 + 1 : 1;
    for (int i = 0; i < times; ++i) {
        life_.install();
    }
    append(findings_, missingParts(life_.machine(), product_));
}

void RoundTrip::spoil() {
    life_.spoilRecords();
    const bool isSpoilt = product_.course >= Course::kDamageArchive && product_.course <= Course::kLoseLog;
    if (isSpoilt && product_.reinstalled) {
        life_.install();
        judgeLosses(true);
    }
}

void RoundTrip::uninstall() {
    const MachineState before = life_.state();
    SurveyJudge surveys(life_.machine());
    surveys.begin();
    if (product_.course == Course::kFailUninstallation) {
        life_.setFault();
    } else if (product_.course == Course::kFillDiskAtEnd) {
        life_.fillDisk();
    }
    const Outcome outcome = life_.uninstall();
    life_.clearFaults();
    if (outcome.isSuccess()) {
        append(findings_, surveys.failedRecords());
    }
    judgeLosses(true);
    switch (promise()) {
        case Promise::kEnd:
            judgeEnd(outcome);
            break;
        case Promise::kFailure:
            judgeFailure(outcome);
            break;
        case Promise::kEndAtLast:
            judgeFirstOfTwo(outcome);
            break;
        case Promise::kNothingDone:
            judgeNothingDone(outcome, before);
            break;
        case Promise::kNoLoss:
            judgeArchivedFiles();
            break;
    }
}

void RoundTrip::judgeLosses(bool isUsed) {
    append(findings_, lossesOfUser(life_.start(), product_, life_.state(), isUsed));
    append(findings_, life_.changedVictims(), "What a link or another name leads to has changed: ");
}

void RoundTrip::expectToBeRepeatable() {
    if (!life_.machine().files.hasFile(ProductLife::kLog)) {
        find("The uninstallation failed and can't be repeated: its log is gone");
    }
}

void RoundTrip::expectState(MachineState expected) {
    MachineState found = life_.state();
    if (isRepeated_) {
        forgetEqualEntries(product_, expected);
        forgetEqualEntries(product_, found);
    }
    append(findings_, differences(expected, found), isRepeated_ ? "After a repetition: " : "");
}

// What has to be out of the way makes the walk fail, everything else is as it was nevertheless. Once it has
// been moved, a repetition comes to the end; where the archive brings it back, only without that.
void RoundTrip::judgeEnd(const Outcome& outcome) {
    const std::set<std::string> staying = filesThatStay(life_.start(), product_);
    if (staying.empty() && !hasTrappedEdit(product_)) {
        if (!outcome.isSuccess()) {
            find("The uninstallation reports an error");
        }
        expectState(expectedEnd(life_.start(), product_));
        return;
    }
    judgeFailure(outcome);
    removeWhatStays();
    clearTheWay(life_.machine(), product_);
    isRepeated_ = true;
    Outcome again = life_.uninstall();
    const bool isArchiveInTheWay = !filesThatComeBack(life_.start(), product_).empty();
    if (isArchiveInTheWay) {
        judgeFailure(again);
        removeWhatStays();
        life_.machine().files.removeFile(ProductLife::kArchive);
        again = life_.uninstall();
    }
    if (!again.isSuccess()) {
        find("A repeated uninstallation reports an error");
    }
    MachineState expected = expectedEnd(life_.start(), product_);
    for (const std::string& path : staying) {
        expected.files.erase(path);
    }
    if (isArchiveInTheWay) {
        expectNoArchive(product_, expected);
    }
    expectState(expected);
}

// The user finds his own files where they were left, and moves them elsewhere.
void RoundTrip::removeWhatStays() {
    const std::map<std::string, std::string> expected = expectedEnd(life_.start(), product_).files;
    const std::set<std::string> comingBack = filesThatComeBack(life_.start(), product_);
    const std::map<std::string, std::string> found = life_.state().files;
    for (const std::string& path : filesThatStay(life_.start(), product_)) {
        const auto at = found.find(path);
        const bool isToBeThere = !isRepeated_ || comingBack.contains(path);
        const std::string content = isRepeated_ ? kBrokenContent : expected.at(path);
        if (isToBeThere && (at == found.end() || at->second != content)) {
            find("A file that was to stay is lost: " + path);
        }
        life_.machine().files.removeFile(path);
    }
}

void RoundTrip::judgeFailure(const Outcome& outcome) {
    if (outcome.isSuccess()) {
        find("The uninstallation reports success in spite of what is left or spoilt");
    }
    expectToBeRepeatable();
    if (product_.registers && !life_.isListed()) {
        find("The product is no longer listed, but still there");
    }
}

// The action that removes it may have been the call that failed; actions are no part of the outcome.
void RoundTrip::removeWhatActionsLeave() {
    for (const Item& item : product_.items) {
        if (item.kind == ItemKind::kCopyFile || item.kind == ItemKind::kCreateFile) {
            life_.machine().files.removeFile(placeOf(item));
        }
    }
}

void RoundTrip::judgeFirstOfTwo(const Outcome& outcome) {
    if (outcome.isSuccess()) {
        removeWhatActionsLeave();
        judgeEnd(outcome);
    } else if (findings_.empty()) {
        judgeRepetition();
    }
}

// Once the uninstaller has gone, in the last steps, nothing but the records may be left to delete.
void RoundTrip::judgeRepetition() {
    if (!life_.machine().files.hasFile(ProductLife::kUninstaller)) {
        MachineState found = life_.state();
        std::erase_if(found.files, [](const auto& file) { return isOwnRecord(file.first); });
        std::erase_if(found.rights, [](const auto& file) { return isOwnRecord(file.first); });
        std::erase_if(found.registry, [](const auto& entry) { return isOfListEntry(entry.first); });
        const MachineState expected = expectedEnd(life_.start(), product_);
        if (!expected.directories.contains("/product")) {
            found.directories.erase("/product");
        }
        append(findings_, differences(expected, found), "Without the uninstaller: ");
        return;
    }
    expectToBeRepeatable();
    isRepeated_ = true;
    judgeEnd(life_.uninstall());
}

void RoundTrip::judgeNothingDone(const Outcome& outcome, const MachineState& before) {
    if (outcome.isSuccess()) {
        find("The uninstallation reports success without its log");
    }
    expectState(before);
}

// An installation over a lost log saves what the archive holds.
void RoundTrip::judgeArchivedFiles() {
    if (product_.course != Course::kLoseLog) {
        return;
    }
    const std::map<std::string, std::string> expected = expectedEnd(life_.start(), product_).files;
    const std::map<std::string, std::string> found = life_.state().files;
    for (const Item& item : product_.items) {
        const std::string path = placeOf(item);
        if (item.kind == ItemKind::kFile && item.option && item.later != Trap::kLink &&
            life_.start().files.contains(path) &&
            (!found.contains(path) || found.at(path) != expected.at(path))) {
            find("A file of the user has not come back: " + path);
        }
    }
}

}  // namespace

std::vector<std::string> runRoundTrip(const ProductCase& product) {
    return RoundTrip(product).run();
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
    for (bool ProductCase::*circumstance : {&ProductCase::foreignFile, &ProductCase::firewallOff,
                                            &ProductCase::registers, &ProductCase::reinstalled}) {
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
        for (bool Item::*property : {&Item::option, &Item::earlier, &Item::isPrivate, &Item::touched}) {
            ProductCase smaller = failing;
            smaller.items[i].*property = false;
            keepIfFailing(std::move(smaller));
        }
        for (Trap Item::*trap : {&Item::atFirst, &Item::later}) {
            ProductCase smaller = failing;
            smaller.items[i].*trap = Trap::kNone;
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
