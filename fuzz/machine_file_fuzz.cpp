#include <string>
#include <string_view>

#include "base/errors.h"
#include "fuzz_target.h"
#include "input_sections.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/expectation.h"
#include "rehearsal/machine_changes.h"
#include "rehearsal/machine_format.h"
#include "rehearsal/rehearsed_machine.h"

// The input as a machine file and, after "%%", an expectation of a fixed outcome. A machine that is made from
// one differs in nothing from another one that is, and an expectation that is updated is met.
namespace {

Outcome someOutcome() {
    return {{{"install result", {"success"}},
             {"install files", {"/opt/a = \"x\"", "/opt/b = directory", "\"/opt/c = d\" = removed"}},
             {"install environment", {}},
             {"install output", {"one", "two", "two", "three"}}},
            ""};
}

// What is read from a text that was written is that text.
void checkTexts(std::string_view bytes) {
    for (const std::string_view stop : {std::string_view(), MachineFormat::kIs, MachineFormat::kOf}) {
        const std::string line = entryText(bytes, stop) + std::string(stop);
        EntryReader reader(line, 1);
        require(reader.takeText({stop}) == bytes);
        require(reader.rest() == stop);
    }
}

bool checkMachine(std::string_view text) {
    try {
        const MachineDescription description = readMachine(text);
        const auto beside = [](const MachineDescription::Named& copy) { return copy.text; };
        RehearsedMachine machine(description, beside);
        RehearsedMachine again(description, beside);
        const MachineChanges none = changesBetween(takeSnapshot(again), takeSnapshot(machine), machine);
        require(none.files.empty() && none.registry.empty() && none.environment.empty());
        require(none.shortcuts.empty() && none.firewall.empty());
        return true;
    } catch (const GenericError&) {
        return false;
    }
}

bool checkExpectation(std::string_view text) {
    try {
        const Outcome outcome = someOutcome();
        const Expectation expectation(text);
        expectation.differences(outcome);
        const Expectation updated(expectation.updated(outcome));
        require(updated.differences(outcome).empty());
        require(updated.updated(outcome) == expectation.updated(outcome));
        return true;
    } catch (const GenericError&) {
        return false;
    }
}

}  // namespace

bool accepts(std::string_view input) {
    const auto sections = sectionsOf(input);
    checkTexts(input);
    const bool isMachine = checkMachine(sections.front());
    return checkExpectation(sections.back()) && isMachine && sections.size() == 2;
}
