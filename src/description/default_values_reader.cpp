#include "description/default_values_reader.h"

#include <cstring>
#include <string>
#include <string_view>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "description/command_line_arguments.h"
#include "description/environment_access.h"
#include "description/expressions.h"
#include "description/log_variable_source.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "support/debug_log.h"

namespace {

constexpr std::size_t kNameCapacity = InstallVariable::kNameLimit + 1;
constexpr int kShortText = 1024;
constexpr int kRegistryText = 8192;

// Attributes that are switches are on by their presence unless they begin with a zero.
bool isSwitchedOn(const char* attribute) {
    return attribute != nullptr && *attribute != '0';
}

const char* orElse(const char* text, const char* otherwise) {
    return text != nullptr ? text : otherwise;
}

bool isVariableElement(const PXML& document, std::int32_t node) {
    return OUtils::equalsIgnoreCase(document.getName(node), "Value");
}

}  // namespace

// One child of the section, as its handler sees it. Absent attributes and texts are null.
struct DefaultValuesReader::Value {
    const char* dataType;
    const char* name;
    const char* text;
    const char* defaultText;
    const char* useOld;
    const char* recalculate;
    const char* registryPlace;
    const char* registryKey;
    const char* preferredKey;
    const char* applicationName;
    const char* directory;
    // Filled ahead of the handler: what the variable held, and whether its value may be replaced.
    bool isStored;
    bool mayOverwrite;
    char current[kNameCapacity];
};

struct DefaultValuesReader::Handler {
    const char* dataType;
    void (DefaultValuesReader::*define)(const Value& value);
};

namespace {

template <typename Value>
void readAttributes(const PXML& document, std::int32_t node, Value& value) {
    value.dataType = document.getAttribute(node, "DataType");
    value.name = document.getAttribute(node, "Name");
    value.text = document.getText(node);
    value.defaultText = document.getAttribute(node, "Default");
    value.useOld = document.getAttribute(node, "UseOld");
    value.recalculate = document.getAttribute(node, "Recalculate");
    value.registryPlace = document.getAttribute(node, "RegPlace");
    value.registryKey = document.getAttribute(node, "RegKey");
    value.preferredKey = document.getAttribute(node, "PreferredKey");
    value.applicationName = document.getAttribute(node, "AppName");
    value.directory = document.getAttribute(node, "Directory");
    value.isStored = false;
    value.mayOverwrite = true;
    value.current[0] = '\0';
}

// What a variable starts with before anything is looked up.
const char* initialText(const char* dataType, const char* defaultText, const char* text) {
    const std::string_view type = orElse(dataType, "");
    if (OUtils::startsWithIgnoreCase(type, "registry")) {
        return defaultText;
    }
    if (OUtils::startsWithIgnoreCase(type, "checkproc")) {
        return "0";
    }
    return OUtils::startsWithIgnoreCase(type, "checkfile") ? orElse(defaultText, "0") : text;
}

}  // namespace

DefaultValuesReader::DefaultValuesReader(VariableStore& variables, Expressions& expressions,
                                         DefaultValueSources sources, DebugLog debugLog)
    : variables_(variables),
      expressions_(expressions),
      sources_(sources),
      debugLog_(debugLog),
      registry_(sources.system) {}

namespace {

constexpr std::size_t kHandlerCount = 8;

}  // namespace

const DefaultValuesReader::Handler* DefaultValuesReader::findHandler(const char* dataType) {
    static constexpr Handler kHandlers[kHandlerCount + 1] = {
        {"registry", &DefaultValuesReader::defineFromRegistry},
        {"installvar", &DefaultValuesReader::defineFromInstalledVariable},
        {"install_app", &DefaultValuesReader::defineFromInstalledApplication},
        {"value", &DefaultValuesReader::defineFromExpression},
        {"checkproc", &DefaultValuesReader::defineFromProcess},
        {"cmdlinearg", &DefaultValuesReader::defineFromCommandLine},
        {"checkfile", &DefaultValuesReader::defineFromFile},
        {"envvar", &DefaultValuesReader::defineFromEnvironment},
        {nullptr, nullptr},
    };
    if (dataType == nullptr) {
        return kHandlers;
    }
    for (const Handler& handler : kHandlers) {
        // A longer word that begins with the keyword counts as the keyword.
        if (handler.dataType != nullptr && OUtils::startsWithIgnoreCase(dataType, handler.dataType)) {
            return &handler;
        }
    }
    return nullptr;
}

std::vector<const char*> DefaultValuesReader::dataTypes() {
    std::vector<const char*> words;
    for (const Handler* handler = findHandler(nullptr); handler->dataType != nullptr; ++handler) {
        words.push_back(handler->dataType);
    }
    return words;
}

int DefaultValuesReader::readDefValues(const PXML& document) {
    const std::int32_t section = document.findByName("DefValues");
    if (section < 0) {
        return -1;
    }
    std::vector<std::int32_t> children;
    document.listChildren(section, children);
    variables_.setInitializingDefaults(true);
    // The first pass lets a value refer to one that is defined further down.
    for (const std::int32_t child : children) {
        if (isVariableElement(document, child)) {
            declare(document, child);
        }
    }
    for (std::size_t position = 0; position < children.size(); ++position) {
        define(document, children[position], position);
    }
    variables_.setInitializingDefaults(false);
    return 0;
}

void DefaultValuesReader::declare(const PXML& document, std::int32_t node) {
    Value value;
    readAttributes(document, node, value);
    if (value.useOld != nullptr && expressions_.evaluateCondition(value.useOld) != 0) {
        return;
    }
    if (expressions_.evaluateCondition(document.getAttribute(node, "Condition")) == 0) {
        return;
    }
    const char* initial = initialText(value.dataType, value.defaultText, value.text);
    if (initial != nullptr && value.name != nullptr) {
        variables_.storeVariable(value.name, "", "", false, initial);
    }
}

void DefaultValuesReader::define(const PXML& document, std::int32_t node, std::size_t position) {
    if (!isVariableElement(document, node)) {
        debugLog_.print("WARNING: Unrecognized tag type \"%s\" in <DefValues> tag!", document.getName(node));
        return;
    }
    Value value;
    readAttributes(document, node, value);
    if (value.dataType == nullptr || value.name == nullptr) {
        warnOfMissing(value, position);
        return;
    }
    if (expressions_.evaluateCondition(document.getAttribute(node, "Condition")) == 0) {
        return;
    }
    value.isStored = variables_.getVariable(value.name, value.current, sizeof value.current) >= 0;
    value.mayOverwrite = mayOverwrite(value, value.isStored);
    if (const Handler* handler = findHandler(value.dataType)) {
        (this->*handler->define)(value);
    }
}

// The message says "Type" for the attribute DataType; tools look for these words.
void DefaultValuesReader::warnOfMissing(const Value& value, std::size_t position) {
    const bool both = value.dataType == nullptr && value.name == nullptr;
    const std::string name = value.name == nullptr ? "" : std::string(" with name: ") + value.name;
    debugLog_.print("WARNING: A variable in <DefValues> is missing %s%s%s attribute! (Value index: %d%s)",
                    value.dataType == nullptr ? "\"Type\"" : "", both ? " and " : "",
                    value.name == nullptr ? "\"Name\"" : "", static_cast<int>(position), name.c_str());
}

bool DefaultValuesReader::mayOverwrite(const Value& value, bool isStored) {
    return !isStored || value.useOld == nullptr || expressions_.evaluateCondition(value.useOld) == 0;
}

void DefaultValuesReader::publish(const Value& value, const char* text) {
    variables_.setDefaultValue(value.name, text);
    if (value.mayOverwrite) {
        variables_.setVariable(value.name, text);
    }
}

void DefaultValuesReader::defineFromRegistry(const Value& value) {
    if (value.registryPlace == nullptr || value.registryKey == nullptr) {
        return;
    }
    char text[kRegistryText];
    const RegistryQuery query = {value.registryPlace, value.registryKey, value.text, value.preferredKey};
    if (registry_.lookUp(query, text, sizeof text) == 0) {
        publish(value, text);
    } else if (value.defaultText != nullptr && value.current[0] == '\0') {
        publish(value, value.defaultText);
    }
}

void DefaultValuesReader::defineFromInstalledVariable(const Value& value) {
    if (value.applicationName == nullptr || value.text == nullptr) {
        return;
    }
    const auto log = sources_.system.applicationLogFile(value.applicationName);
    std::string found;
    if (log && sources_.logs.findVariableInLog(log->c_str(), value.text, found)) {
        publish(value, found.c_str());
    } else if (value.defaultText != nullptr) {
        publish(value, value.defaultText);
    }
}

void DefaultValuesReader::defineFromInstalledApplication(const Value& value) {
    if (value.text == nullptr || *value.text == '\0') {
        return;
    }
    if (value.defaultText != nullptr) {
        variables_.setDefaultValue(value.name, value.defaultText);
    }
    const bool isInstalled = sources_.system.findUninstallEntry(value.text, 0);
    variables_.setVariable(value.name, isInstalled ? "1" : orElse(value.defaultText, "0"));
}

void DefaultValuesReader::defineFromExpression(const Value& value) {
    char expansion[kShortText];
    if (value.text == nullptr ||
        expressions_.expandDollarVariables(value.text, expansion, sizeof expansion) == 0) {
        return;
    }
    const bool replaces = value.mayOverwrite || value.current[0] == '\0';
    variables_.storeVariable(value.name, replaces ? expansion : nullptr, value.text,
                             staysRecalculated(value, expansion), expansion);
}

// A value that the user changed in an earlier run stops following its expression.
bool DefaultValuesReader::staysRecalculated(const Value& value, const char* expansion) {
    if (!isSwitchedOn(value.recalculate)) {
        return false;
    }
    if (!value.isStored || !isSwitchedOn(value.useOld)) {
        return true;
    }
    char fresh[kShortText];
    char current[kShortText];
    OUtils::copyText(fresh, expansion, sizeof fresh);
    OUtils::copyText(current, value.current, sizeof current);
    OUtils::normalizePath(fresh);
    OUtils::normalizePath(current);
    return std::strcmp(fresh, current) == 0;
}

void DefaultValuesReader::defineFromProcess(const Value& value) {
    if (value.text == nullptr) {
        return;
    }
    char directory[OUtils::kPathCapacity];
    const bool hasDirectory =
        value.directory != nullptr &&
        expressions_.expandVariables(value.directory, directory, sizeof directory, true) != 0;
    if (hasDirectory) {
        OUtils::normalizePath(directory);
    }
    const bool runs = sources_.system.isApplicationRunning(value.text, hasDirectory ? directory : "");
    variables_.setVariable(value.name, runs ? "1" : "0");
}

void DefaultValuesReader::defineFromCommandLine(const Value& value) {
    const CommandLineArguments* arguments = sources_.arguments;
    if (arguments == nullptr) {
        return;
    }
    for (int i = arguments->getArgumentCount() - 1; i >= 0; --i) {
        if (OUtils::equalsIgnoreCase(arguments->getArgumentName(i), value.name)) {
            const char* argument = arguments->getArgumentValue(i);
            variables_.setVariable(value.name, *argument == '\0' ? "1" : argument);
            return;
        }
    }
    if (value.text != nullptr) {
        publish(value, value.text);
    }
}

void DefaultValuesReader::defineFromFile(const Value& value) {
    char path[OUtils::kPathCapacity];
    if (value.text == nullptr || expressions_.expandDollarVariables(value.text, path, sizeof path) == 0) {
        return;
    }
    OUtils::normalizePath(path);
    const char* fallback = orElse(value.defaultText, "0");
    if (sources_.environment.fileExists(path)) {
        variables_.setVariable(value.name, path);
        variables_.setDefaultValue(value.name, fallback);
        return;
    }
    variables_.setVariable(value.name, fallback);
    if (!value.mayOverwrite) {
        variables_.setDefaultValue(value.name, fallback);
        debugLog_.print("WARNING: File check variables should NOT be used from previous installations!");
    }
}

void DefaultValuesReader::defineFromEnvironment(const Value& value) {
    if (value.defaultText != nullptr) {
        variables_.setDefaultValue(value.name, value.defaultText);
    }
    std::string defined;
    if (value.text != nullptr && sources_.environment.getEnvironment(value.text, defined)) {
        variables_.setVariable(value.name, defined.c_str());
    } else {
        variables_.setVariable(value.name, orElse(value.defaultText, ""));
    }
}
