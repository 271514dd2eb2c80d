#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "description/registry_lookup.h"
#include "support/debug_log.h"

class AnswersFile;
class CommandLineArguments;
class Expressions;
class LogVariableSource;
class PXML;
class SystemOperations;
class VariableStore;
namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// Where default values come from beside the description. All of it outlives the readers.
struct DefaultValueSources {
    SystemOperations& system;
    platform::Environment& environment;
    platform::FileSystem& files;
    LogVariableSource& logs;
    AnswersFile& answers;
};

// Fills the variables from the DefValues element of a document: the description's, or a configuration file's.
class DefaultValuesReader {
public:
    DefaultValuesReader(VariableStore& variables, Expressions& expressions, DefaultValueSources sources,
                        DebugLog debugLog);

    // False when the document has no DefValues element. Everything else that is wrong is logged, and the
    // variable in question stays as it was. `arguments` is null without a command line.
    bool readDefValues(const PXML& document, const CommandLineArguments* arguments);

private:
    struct Value;
    struct Handler;
    static const Handler* findHandler(std::string_view dataType);

    void declare(const Value& value);
    void define(const PXML& document, std::int32_t node, std::size_t position);
    void warnOfMissing(const Value& value, std::size_t position);
    void publish(const Value& value, std::string_view text);

    enum class ValueSource;
    void noteOrigin(const Value& value, ValueSource source);
    void defineFromRegistry(const Value& value);
    void defineFromInstalledVariable(const Value& value);
    void defineFromInstalledApplication(const Value& value);
    void defineFromExpression(const Value& value);
    void defineFromProcess(const Value& value);
    void defineFromCommandLine(const Value& value);
    void defineFromFile(const Value& value);
    void defineFromEnvironment(const Value& value);
    bool staysRecalculated(const Value& value, const std::string& expansion);

    VariableStore& variables_;
    Expressions& expressions_;
    DefaultValueSources sources_;
    DebugLog debugLog_;
    RegistryLookup registry_;
    const CommandLineArguments* arguments_ = nullptr;  // of the reading that runs
};
