#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "base/text_functions.h"
#include "description/answers_file.h"
#include "description/log_variable_source.h"
#include "description/pxml.h"
#include "description/variables.h"
#include "engine/configuration_export.h"
#include "fakes/fake_console.h"
#include "fakes/fake_system_operations.h"
#include "fuzz_target.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"

// The input as the answers file of an unattended run: its values replace those of a description. What a
// run then leaves as its own answers file gives a second run the same values.
namespace {

constexpr const char* kDescription =
    "<R><DefValues>"
    "<Value Name=\"DIR\" DataType=\"value\">/opt/x</Value>"
    "<Value Name=\"SUB\" DataType=\"value\" Recalculate=\"1\">$DIR$/sub</Value>"
    "<Value Name=\"OLD\" DataType=\"value\" UseOld=\"1\">old</Value>"
    "</DefValues></R>";

class AnyLog : public LogVariableSource {
public:
    std::optional<std::string> findVariableInLog(std::string_view, std::string_view name) override {
        return std::string(name);
    }
};

// A run up to the point at which all values are known.
class Run {
public:
    explicit Run(std::string_view answers) {
        system_.installed = {{"App", "", false, "/log"}};
        environment_.program = "/opt/setup";
        environment_.variables = {{"HOME", "/root"}, {"LONG", std::string(5000, 'l')}};
        files_.addFile("/answers.xml", std::string(answers));
        PXML description;
        description.parseText(kDescription);
        std::string message;
        require(variables_.loadDefaults(description, "/answers.xml", nullptr, message) ==
                DefaultsOutcome::kLoaded);
    }

    VariableStore& variables() { return variables_.store(); }
    std::string exported() {
        require(ConfigurationExport(variables_.store(), variables_.exclusions(), files_, log_)
                    .write("/config.xml"));
        return files_.content("/config.xml");
    }
    // Whether the answers set one of the description's variables.
    bool isTaken() { return answers_.hasValues() && valueOf("DIR") != "/opt/x"; }
    std::string valueOf(std::string_view name) { return variables_.get(name).value_or(""); }

private:
    MemoryFileSystem files_;
    FakeSystemOperations system_;
    MemoryEnvironment environment_;
    AnyLog logs_;
    FakeConsole log_;
    AnswersFile answers_{files_};
    std::int32_t isGraphical_ = 0;
    Variables variables_{isGraphical_, {system_, environment_, files_, logs_, answers_}, DebugLog(log_, 2)};
};

void checkStore(Run& run) {
    std::set<std::string> names;
    for (std::int32_t index = 0; index < run.variables().getCount(); ++index) {
        const InstallVariable& variable = run.variables().at(index);
        require(!variable.name.empty() && variable.name.size() <= InstallVariable::kNameLimit);
        require(!PredefinedVariables::isPredefined(variable.name) && variable.name.front() != '$');
        require(names.insert(OUtils::toLowerAscii(variable.name)).second);
        require(variable.value.size() <= InstallVariable::kTextLimit);
        require(variable.expression.size() <= InstallVariable::kTextLimit);
        require(variable.defaultValue.size() <= InstallVariable::kTextLimit);
    }
    require(run.valueOf("WX_PORT") == "win" && run.valueOf("TEMP_DIR") == "/tmp");
}

// What the format of an answers file can carry unchanged: texts that reading neither expands nor trims.
bool isRepeatable(std::string_view text) {
    return !text.empty() && text.size() < 1024 && text.front() != ' ' && text.back() != ' ' &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F && c != '$'; });
}

// What was detected on this machine, or still follows its expression, isn't exported.
void checkRepeated(Run& run) {
    const std::string exported = run.exported();
    Run again(exported);
    checkStore(again);
    PXML values;
    values.parseText(exported);
    for (std::int32_t node = 0; node < values.getNodeCount(); ++node) {
        const std::string name(values.getAttribute(node, "Name").value_or(""));
        if (isRepeatable(name) && isRepeatable(run.valueOf(name))) {
            require(again.valueOf(name) == run.valueOf(name));
        }
    }
}

}  // namespace

bool accepts(std::string_view input) {
    Run run(input);
    const bool isTaken = run.isTaken();
    checkStore(run);
    checkRepeated(run);
    for (const ResetMode mode : {kResetToExpression, kResetToExpressionAndFollow, kResetToDefault}) {
        for (std::int32_t index = 0; index < run.variables().getCount(); ++index) {
            run.variables().reset(run.variables().at(index).name, mode);
        }
    }
    checkStore(run);
    return isTaken;
}
