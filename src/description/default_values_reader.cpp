#include "description/default_values_reader.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "description/command_line_arguments.h"
#include "description/expressions.h"
#include "description/log_variable_source.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "description/vocabulary_lookup.h"
#include "platform/environment.h"
#include "platform/file_system.h"

namespace {

constexpr std::size_t kNameLimit = InstallVariable::kNameLimit;
constexpr std::size_t kPathCapacity = OUtils::kPathCapacity;
constexpr std::size_t kShortCapacity = 1024;
constexpr std::string_view kZero = "0";

using Text = std::optional<std::string_view>;

// Attributes that are switches are on by their presence unless they begin with a zero.
bool isSwitchedOn(Text attribute) {
    return attribute && !attribute->starts_with('0');
}

std::string normalized(std::string_view path) {
    std::string text(path);
    OUtils::normalizePath(text.data());
    text.resize(std::strlen(text.c_str()));
    return text;
}

}  // namespace

// One child of the section, as its handler sees it.
struct DefaultValuesReader::Value {
    Value(const PXML& document, std::int32_t node)
        : dataType(vocabulary::attributeOf(document, node, "DataType")),
          name(vocabulary::attributeOf(document, node, "Name")),
          text(document.getText(node)),
          defaultText(vocabulary::attributeOf(document, node, "Default")),
          useOld(vocabulary::attributeOf(document, node, "UseOld")),
          recalculate(vocabulary::attributeOf(document, node, "Recalculate")),
          condition(vocabulary::attributeOf(document, node, "Condition")),
          registryPlace(vocabulary::attributeOf(document, node, "RegPlace")),
          registryKey(vocabulary::attributeOf(document, node, "RegKey")),
          preferredKey(vocabulary::attributeOf(document, node, "PreferredKey")),
          applicationName(vocabulary::attributeOf(document, node, "AppName")),
          directory(vocabulary::attributeOf(document, node, "Directory")) {}

    // What the variable starts with before anything is looked up.
    Text initialText() const;

    Text dataType;
    Text name;
    Text text;
    Text defaultText;
    Text useOld;
    Text recalculate;
    Text condition;
    Text registryPlace;
    Text registryKey;
    Text preferredKey;
    Text applicationName;
    Text directory;
    // Filled before the handler runs: what the variable held, and whether its value may be replaced.
    bool isStored = false;
    bool mayOverwrite = true;
    std::string current;
};

// Where the value of a data type comes from. What is looked up respects a value of an earlier installation,
// what is measured doesn't.
enum class DefaultValuesReader::ValueSource { kExpression, kCommandLine, kLookedUp, kMeasured };

struct DefaultValuesReader::Handler {
    vocabulary::WordName dataType;
    void (DefaultValuesReader::*define)(const Value& value);
    enum class Initial { kText, kDefault, kZero, kDefaultOrZero } initial;
    ValueSource source;
};

Text DefaultValuesReader::Value::initialText() const {
    using Initial = Handler::Initial;
    const Handler* handler = findHandler(dataType.value_or(std::string_view()));
    switch (handler == nullptr ? Initial::kText : handler->initial) {
        case Initial::kDefault:
            return defaultText;
        case Initial::kZero:
            return kZero;
        case Initial::kDefaultOrZero:
            return defaultText.value_or(kZero);
        default:
            return text;
    }
}

DefaultValuesReader::DefaultValuesReader(VariableStore& variables, Expressions& expressions,
                                         DefaultValueSources sources, DebugLog debugLog)
    : variables_(variables),
      expressions_(expressions),
      sources_(sources),
      debugLog_(debugLog),
      registry_(sources.system) {}

// The first word that the data type begins with counts, so that a longer word is taken for the keyword that
// it begins with.
const DefaultValuesReader::Handler* DefaultValuesReader::findHandler(std::string_view dataType) {
    using Initial = Handler::Initial;
    using Source = ValueSource;
    using Self = DefaultValuesReader;
    static constexpr Handler kHandlers[] = {
        {"registry", &Self::defineFromRegistry, Initial::kDefault, Source::kLookedUp},
        {"installvar", &Self::defineFromInstalledVariable, Initial::kText, Source::kLookedUp},
        {"install_app", &Self::defineFromInstalledApplication, Initial::kText, Source::kMeasured},
        {"value", &Self::defineFromExpression, Initial::kText, Source::kExpression},
        {"checkproc", &Self::defineFromProcess, Initial::kZero, Source::kMeasured},
        {"cmdlinearg", &Self::defineFromCommandLine, Initial::kText, Source::kCommandLine},
        {"checkfile", &Self::defineFromFile, Initial::kDefaultOrZero, Source::kMeasured},
        {"envvar", &Self::defineFromEnvironment, Initial::kText, Source::kMeasured},
    };
    const auto found = std::ranges::find_if(kHandlers, [dataType](const Handler& handler) {
        return OUtils::startsWithIgnoreCase(dataType, handler.dataType.view());
    });
    return found == std::end(kHandlers) ? nullptr : &*found;
}

bool DefaultValuesReader::readDefValues(const PXML& document, const CommandLineArguments* arguments) {
    const std::int32_t section = vocabulary::findElement(document, "DefValues");
    if (section < 0) {
        return false;
    }
    arguments_ = arguments;
    const std::vector<std::int32_t> children = document.childrenOf(section);
    variables_.setInitializingDefaults(true);
    // The first pass lets a value refer to one that is defined further down.
    for (const std::int32_t child : children) {
        if (vocabulary::isCalled(document, child, "Value")) {
            declare(Value(document, child));
        }
    }
    for (std::size_t position = 0; position < children.size(); ++position) {
        define(document, children[position], position);
    }
    variables_.setInitializingDefaults(false);
    return true;
}

void DefaultValuesReader::declare(const Value& value) {
    if ((value.useOld && expressions_.holds(value.useOld)) || !expressions_.holds(value.condition)) {
        return;
    }
    const Text initial = value.initialText();
    if (initial && value.name) {
        variables_.store(*value.name, {"", "", initial}, false);
    }
}

void DefaultValuesReader::define(const PXML& document, std::int32_t node, std::size_t position) {
    if (!vocabulary::isCalled(document, node, "Value")) {
        debugLog_.line("WARNING: Unrecognized tag type \"" + std::string(document.getName(node)) +
                       "\" in <DefValues> tag!");
        return;
    }
    Value value(document, node);
    if (!value.dataType || !value.name) {
        warnOfMissing(value, position);
        return;
    }
    if (!expressions_.holds(value.condition)) {
        return;
    }
    if (const std::optional<VariableReading> reading = variables_.read(*value.name, kNameLimit)) {
        value.isStored = reading->isStored();
        value.current = reading->value;
    }
    value.mayOverwrite = !value.isStored || !value.useOld || !expressions_.holds(value.useOld);
    if (const Handler* handler = findHandler(*value.dataType)) {
        (this->*handler->define)(value);
        noteOrigin(value, handler->source);
    }
}

// A value that an earlier installation left may stand where this machine would give another one: that one,
// the default, is what a run without it finds.
void DefaultValuesReader::noteOrigin(const Value& value, ValueSource source) {
    using Source = ValueSource;
    VariableOrigin origin = VariableOrigin::kDetected;
    if (source == Source::kCommandLine) {
        origin = VariableOrigin::kGiven;
    } else if (source == Source::kExpression) {
        const bool refers = value.text && value.text->find('$') != std::string_view::npos;
        origin = !refers                           ? VariableOrigin::kGiven
                 : isSwitchedOn(value.recalculate) ? VariableOrigin::kFollowing
                                                   : VariableOrigin::kExpression;
    }
    const auto found = source == Source::kMeasured
                           ? variables_.read(*value.name, VariableStore::kTextLimit)
                           : variables_.readDefault(*value.name, VariableStore::kTextLimit);
    variables_.noteOrigin(*value.name, origin, found ? found->value : "");
}

// The message says "Type" for the attribute DataType; tools look for these words.
void DefaultValuesReader::warnOfMissing(const Value& value, std::size_t position) {
    const bool both = !value.dataType && !value.name;
    std::string line = "WARNING: A variable in <DefValues> is missing ";
    line += value.dataType ? "" : "\"Type\"";
    line += both ? " and " : "";
    line += value.name ? "" : "\"Name\"";
    line += " attribute! (Value index: " + std::to_string(position);
    line += value.name ? " with name: " + std::string(*value.name) : "";
    debugLog_.line(line + ")");
}

void DefaultValuesReader::publish(const Value& value, std::string_view text) {
    variables_.setDefault(*value.name, text);
    if (value.mayOverwrite) {
        variables_.set(*value.name, text);
    }
}

void DefaultValuesReader::defineFromRegistry(const Value& value) {
    if (!value.registryPlace || !value.registryKey) {
        return;
    }
    const RegistryQuery query = {*value.registryPlace, *value.registryKey,
                                 value.text.value_or(std::string_view()),
                                 value.preferredKey.value_or(std::string_view())};
    if (const std::optional<std::string> text = registry_.lookUp(query)) {
        publish(value, *text);
    } else if (value.defaultText && value.current.empty()) {
        publish(value, *value.defaultText);
    }
}

void DefaultValuesReader::defineFromInstalledVariable(const Value& value) {
    if (!value.applicationName || !value.text) {
        return;
    }
    const auto log = sources_.system.applicationLogFile(*value.applicationName);
    const auto found = log ? sources_.logs.findVariableInLog(*log, *value.text) : std::nullopt;
    if (found) {
        publish(value, *found);
    } else if (value.defaultText) {
        publish(value, *value.defaultText);
    }
}

void DefaultValuesReader::defineFromInstalledApplication(const Value& value) {
    if (!value.text || value.text->empty()) {
        return;
    }
    if (value.defaultText) {
        variables_.setDefault(*value.name, *value.defaultText);
    }
    const bool isInstalled = sources_.system.findUninstallEntry(std::string(*value.text).c_str(), 0);
    variables_.set(*value.name, isInstalled ? "1" : value.defaultText.value_or(kZero));
}

void DefaultValuesReader::defineFromExpression(const Value& value) {
    const std::optional<std::string> expansion =
        value.text ? expressions_.expandDollars(*value.text, kShortCapacity) : std::nullopt;
    if (!expansion) {
        return;
    }
    const bool replaces = value.mayOverwrite || value.current.empty();
    variables_.store(*value.name, {replaces ? Text(*expansion) : std::nullopt, value.text, *expansion},
                     staysRecalculated(value, *expansion));
}

// A value that the user changed in an earlier run stops following its expression.
bool DefaultValuesReader::staysRecalculated(const Value& value, const std::string& expansion) {
    if (!isSwitchedOn(value.recalculate)) {
        return false;
    }
    if (!value.isStored || !isSwitchedOn(value.useOld)) {
        return true;
    }
    return normalized(expansion) == normalized(value.current);
}

void DefaultValuesReader::defineFromProcess(const Value& value) {
    if (!value.text) {
        return;
    }
    const std::optional<std::string> directory =
        value.directory ? expressions_.expand(*value.directory, kPathCapacity, true) : std::nullopt;
    const std::string place = normalized(directory.value_or(""));
    const bool runs = sources_.system.isApplicationRunning(*value.text, place);
    variables_.set(*value.name, runs ? "1" : "0");
}

void DefaultValuesReader::defineFromCommandLine(const Value& value) {
    for (int i = arguments_ == nullptr ? 0 : arguments_->getArgumentCount(); i > 0; --i) {
        if (OUtils::equalsIgnoreCase(arguments_->getArgumentName(i - 1), *value.name)) {
            const std::string_view argument = arguments_->getArgumentValue(i - 1);
            variables_.set(*value.name, argument.empty() ? "1" : argument);
            return;
        }
    }
    if (arguments_ != nullptr && value.text) {
        publish(value, *value.text);
    }
}

void DefaultValuesReader::defineFromFile(const Value& value) {
    const std::optional<std::string> expansion =
        value.text ? expressions_.expandDollars(*value.text, kPathCapacity) : std::nullopt;
    if (!expansion) {
        return;
    }
    const std::string path = normalized(*expansion);
    const std::string_view fallback = value.defaultText.value_or(kZero);
    if (sources_.files.exists(path)) {
        variables_.set(*value.name, path);
        variables_.setDefault(*value.name, fallback);
        return;
    }
    variables_.set(*value.name, fallback);
    if (!value.mayOverwrite) {
        variables_.setDefault(*value.name, fallback);
        debugLog_.line("WARNING: File check variables should NOT be used from previous installations!");
    }
}

void DefaultValuesReader::defineFromEnvironment(const Value& value) {
    if (value.defaultText) {
        variables_.setDefault(*value.name, *value.defaultText);
    }
    const std::optional<std::string> defined =
        value.text ? sources_.environment.get(*value.text) : std::nullopt;
    variables_.set(*value.name, defined ? std::string_view(*defined) : value.defaultText.value_or(""));
}
