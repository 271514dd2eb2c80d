#include "rehearsal/rehearsal.h"

#include <map>
#include <utility>

#include "base/failure.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "platform/manner.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/machine_changes.h"
#include "rehearsal/machine_format.h"
#include "rehearsal/product_run.h"
#include "rehearsal/second_stage.h"

namespace {

using Lines = std::vector<std::string>;

constexpr std::string_view kAnswersName = "answers.xml";

Lines asEntries(const Lines& texts) {
    Lines lines;
    for (const std::string& text : texts) {
        lines.push_back(entryText(text, ""));
    }
    return lines;
}

Lines resultLines(const RunResult& result) {
    Lines lines = {result.hasSucceeded ? "success" : "failure"};
    if (!result.hasSucceeded) {
        lines.push_back("reason" + std::string(MachineFormat::kIs) + entryText(result.failure, ""));
    }
    for (const std::string& error : result.errors) {
        lines.push_back("error" + std::string(MachineFormat::kIs) + entryText(error, ""));
    }
    return lines;
}

// The fields of a record stand between TABs, which nobody sees.
std::string recordText(std::string line) {
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    std::string text;
    for (const char c : line) {
        text += c == '\t' ? std::string(MachineFormat::kField) : std::string(1, c);
    }
    return text;
}

class Rehearsal {
public:
    Rehearsal(const MachineDescription& description, const RehearsedProduct& product,
              const Surroundings& surroundings)
        : manner_(description.system),
          description_(description),
          machine_(description, surroundings.readFile) {
        addPackage("", description.setup, product);
        for (const MachineDescription::Step& step : description.steps) {
            if (!packages_.contains(step.package)) {
                addPackage(step.package, description.besideSetup(OUtils::lastPathComponent(step.package)),
                           surroundings.readPackage(step.package));
            }
        }
        if (product.answers) {
            answersPath_ = description.besideSetup(kAnswersName);
            if (machine_.files.exists(answersPath_)) {
                fail(answersPath_ + " is the place of the answers");
            }
            machine_.files.addFile(answersPath_, *product.answers);
        }
        start_ = takeSnapshot(machine_);
    }

    Outcome run() {
        const platform::MannerInUse manner(manner_);
        for (const MachineDescription::Step& step : description_.steps) {
            take(step);
        }
        return std::move(outcome_);
    }

private:
    struct Package {
        std::string path;  // on the machine
        std::int64_t offset = 0;
    };

    void addPackage(const std::string& name, const std::string& path, const RehearsedProduct& product) {
        if (machine_.files.exists(path)) {
            fail(path + " is the place of a package");
        }
        packages_[name] = {path, product.offset};
        machine_.files.addProgram(path, product.package);
    }

    void take(const MachineDescription::Step& step) {
        machine_.actions.clear();
        const RunResult result = step.isInstallation ? install(step) : uninstall();
        name_ = nameOf(step);
        if (!result.hasSucceeded && outcome_.failure.empty()) {
            outcome_.failure = name_ + ": " + result.failure;
        }
        add(MachineFormat::kResult, resultLines(result));
        add(MachineFormat::kVariables, result.variables);
        addChanges();
        add(MachineFormat::kActions, asEntries(machine_.actions));
        add(MachineFormat::kRecords, asEntries(recordLines()));
        add(MachineFormat::kOutput, asEntries(machine_.console.takeLines()));
        add(MachineFormat::kLog, asEntries(result.log));
    }

    // "install", "install 2".
    std::string nameOf(const MachineDescription::Step& step) {
        int& count = step.isInstallation ? installations_ : uninstallations_;
        const std::string name(step.isInstallation ? MachineFormat::kInstall : MachineFormat::kUninstall);
        return ++count == 1 ? name : name + " " + std::to_string(count);
    }

    RunResult install(const MachineDescription::Step& step) {
        const Package& package = packages_[step.package];
        machine_.setProgram(package.path);
        RunResult result =
            runProduct(machine_, {package.path, package.offset, false, answersPath_, step.options});
        productLog_ = result.productLog;
        return result;
    }

    RunResult uninstall() {
        if (!machine_.files.hasFile(productLog_)) {
            RunResult result;
            result.failure = "there is no action log of an installation";
            return result;
        }
        const SecondStage stage(machine_, productLog_);
        return runProduct(machine_, {stage.logCopy(), 0, true, "", {}});
    }

    void addChanges() {
        MachineChanges changes = changesBetween(start_, takeSnapshot(machine_), machine_);
        add(MachineFormat::kFiles, std::move(changes.files));
        add(MachineFormat::kRegistry, std::move(changes.registry));
        add(MachineFormat::kEnvironment, std::move(changes.environment));
        add(MachineFormat::kShortcuts, std::move(changes.shortcuts));
        add(MachineFormat::kFirewall, std::move(changes.firewall));
    }

    Lines recordLines() {
        if (productLog_.empty() || !machine_.files.hasFile(productLog_)) {
            return {};
        }
        Lines lines;
        for (std::string& line : OUtils::splitText(machine_.files.content(productLog_), '\n')) {
            lines.push_back(recordText(std::move(line)));
        }
        if (!lines.empty() && lines.back().empty()) {
            lines.pop_back();
        }
        return lines;
    }

    void add(std::string_view what, Lines lines) {
        outcome_.sections.push_back({name_ + " " + std::string(what), std::move(lines)});
    }

    MemoryManner manner_;
    const MachineDescription& description_;
    RehearsedMachine machine_;
    std::map<std::string, Package> packages_;  // by the names of the steps
    MachineSnapshot start_;
    std::string answersPath_;
    std::string productLog_;
    std::string name_;
    int installations_ = 0;
    int uninstallations_ = 0;
    Outcome outcome_;
};

}  // namespace

Outcome rehearse(const MachineDescription& description, const RehearsedProduct& product,
                 const Surroundings& surroundings) {
    return Rehearsal(description, product, surroundings).run();
}
