#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "base/text_functions.h"
#include "description/command_line_arguments.h"
#include "description/default_values_loader.h"
#include "description/default_values_reader.h"
#include "description/environment_access.h"
#include "description/expressions.h"
#include "description/log_variable_source.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "engine/configuration_export.h"
#include "fakes/fake_console.h"
#include "fakes/fake_system_operations.h"
#include "fakes/memory_file_system.h"

// The input as the answers file of an unattended run: its values are laid over those of a description. What a
// run then leaves as its own answers file gives a second run the same values.
namespace {

constexpr const char* kDescription =
    "<R><DefValues>"
    "<Value Name=\"DIR\" DataType=\"value\">/opt/x</Value>"
    "<Value Name=\"SUB\" DataType=\"value\" Recalculate=\"1\">$DIR$/sub</Value>"
    "<Value Name=\"OLD\" DataType=\"value\" UseOld=\"1\">old</Value>"
    "</DefValues></R>";

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

class TableEnvironment : public EnvironmentAccess {
public:
    bool getEnvironment(const char* name, std::string& outValue) override {
        const auto found = table_.find(name);
        if (found == table_.end()) {
            return false;
        }
        outValue = found->second;
        return true;
    }
    bool setEnvironment(const char* name, const char* value) override {
        table_[name] = value;
        return true;
    }
    bool fileExists(const char* path) override { return *path == '/'; }
    bool getProgramPath(std::string& outPath) override {
        outPath = "/opt/setup";
        return true;
    }
    bool getTempDirectory(std::string& outPath) override {
        outPath = "/tmp";
        return true;
    }

private:
    std::map<std::string, std::string> table_ = {{"HOME", "/root"}, {"LONG", std::string(5000, 'l')}};
};

class AnyLog : public LogVariableSource {
public:
    bool findVariableInLog(const char*, const char* name, std::string& outValue) override {
        outValue = name;
        return true;
    }
};

// A run up to the point at which all values are laid over each other.
class Run {
public:
    explicit Run(std::string_view answers) {
        system_.installed = {{"App", "", false, "/log"}};
        files_.addFile("/answers.xml", std::string(answers));
        PXML description;
        description.parseText(kDescription);
        require(loader_.loadDefaultValues(description, "/answers.xml", nullptr) == 0);
    }

    VariableStore& variables() { return variables_; }
    std::string exported() {
        require(ConfigurationExport(variables_, exclusions_, files_, log_).write("/config.xml"));
        return files_.content("/config.xml");
    }
    std::string valueOf(const char* name) {
        char value[InstallVariable::kTextCapacity] = "";
        variables_.getVariable(name, value, sizeof value);
        return value;
    }

private:
    MemoryFileSystem files_;
    FakeSystemOperations system_;
    TableEnvironment environment_;
    AnyLog logs_;
    FakeConsole log_;
    DebugLog console_{log_, 2};
    const CommandLineArguments* arguments_ = nullptr;
    std::int32_t isGraphical_ = 0;
    PredefinedVariables predefined_{isGraphical_, environment_, console_};
    VariableStore variables_{predefined_, environment_, console_};
    Expressions expressions_{variables_, console_};
    VariableExclusions exclusions_;
    DefaultValuesReader reader_{
        variables_, expressions_, {system_, environment_, logs_, arguments_}, console_};
    DefaultValuesLoader loader_{reader_, variables_, exclusions_, {files_, arguments_}, console_};
};

void checkStore(Run& run) {
    std::set<std::string> names;
    for (std::int32_t index = 0; index < run.variables().getCount(); ++index) {
        const InstallVariable& variable = run.variables().at(index);
        require(!variable.name.empty() && variable.name.size() < InstallVariable::kNameCapacity);
        require(!PredefinedVariables::isPredefined(variable.name.c_str()) && variable.name.front() != '$');
        require(names.insert(OUtils::toLowerAscii(variable.name)).second);
        require(variable.value.size() < InstallVariable::kTextCapacity);
        require(variable.expression.size() < InstallVariable::kTextCapacity);
        require(variable.defaultValue.size() < InstallVariable::kTextCapacity);
    }
    require(run.valueOf("WX_PORT") == "win" && run.valueOf("TEMP_DIR") == "/tmp");
}

// What the format of an answers file can carry unchanged: texts that reading neither expands nor trims.
bool isRepeatable(std::string_view text) {
    return !text.empty() && text.size() < 1024 && text.front() != ' ' && text.back() != ' ' &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F && c != '$'; });
}

void checkRepeated(Run& run) {
    Run again(run.exported());
    checkStore(again);
    for (std::int32_t index = 0; index < run.variables().getCount(); ++index) {
        const InstallVariable& variable = run.variables().at(index);
        if (isRepeatable(variable.name) && isRepeatable(variable.value)) {
            require(again.valueOf(variable.name.c_str()) == variable.value);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run({reinterpret_cast<const char*>(data), size});
    checkStore(run);
    checkRepeated(run);
    for (const int mode : {kResetToExpression, kResetToExpressionAndFollow, kResetToDefault}) {
        for (std::int32_t index = 0; index < run.variables().getCount(); ++index) {
            run.variables().resetVariable(run.variables().at(index).name.c_str(), mode);
        }
    }
    checkStore(run);
    return 0;
}
