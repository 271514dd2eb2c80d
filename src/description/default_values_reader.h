#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "description/registry_lookup.h"
#include "support/debug_log.h"

class CommandLineArguments;
class EnvironmentAccess;
class Expressions;
class LogVariableSource;
class PXML;
class SystemOperations;
class VariableStore;

// Where default values come from beside the description.
struct DefaultValueSources {
    SystemOperations& system;
    EnvironmentAccess& environment;
    LogVariableSource& logs;
    // Null when there is no parsed command line.
    const CommandLineArguments* const& arguments;
};

// Fills the variables from the DefValues element of a document: the description's, or a configuration file's.
class DefaultValuesReader {
public:
    DefaultValuesReader(VariableStore& variables, Expressions& expressions, DefaultValueSources sources,
                        DebugLog debugLog);

    // 0, or -1 when the document has no DefValues element. Everything else that is wrong is logged, and the
    // variable in question stays as it was.
    int readDefValues(const PXML& document);

    // The words of the attribute DataType that have a meaning, in the order in which they are tried.
    static std::vector<const char*> dataTypes();

private:
    struct Value;
    struct Handler;
    static const Handler* findHandler(const char* dataType);

    void declare(const PXML& document, std::int32_t node);
    void define(const PXML& document, std::int32_t node, std::size_t position);
    void warnOfMissing(const Value& value, std::size_t position);
    bool mayOverwrite(const Value& value, bool isStored);
    void publish(const Value& value, const char* text);

    void defineFromRegistry(const Value& value);
    void defineFromInstalledVariable(const Value& value);
    void defineFromInstalledApplication(const Value& value);
    void defineFromExpression(const Value& value);
    void defineFromProcess(const Value& value);
    void defineFromCommandLine(const Value& value);
    void defineFromFile(const Value& value);
    void defineFromEnvironment(const Value& value);
    bool staysRecalculated(const Value& value, const char* expansion);

    VariableStore& variables_;
    Expressions& expressions_;
    DefaultValueSources sources_;
    DebugLog debugLog_;
    RegistryLookup registry_;
};
