#pragma once

#include "platform/platform.h"
#include "support/debug_log.h"

class Cabinet;
class ControlVariables;
class Expressions;
class FileSets;
class PXML;
class ProductDescription;
class RunOutcome;
class SystemOperations;
class VariableExclusions;
class VariableStore;

// The product as its description says it, with the variables of the session.
struct ProductModel {
    const PXML& description;
    Expressions& expressions;
    VariableStore& variables;
    const ProductDescription& product;
    const FileSets& fileSets;
    const ControlVariables& controls;
    const VariableExclusions& exclusions;
};

// What the jobs of the engine work on. All of it is borrowed and outlives them.
struct EngineParts {
    ProductModel model;
    const Cabinet& cabinet;
    platform::Platform machine;
    SystemOperations& system;
    DebugLog debugLog;
    RunOutcome* outcome = nullptr;  // null: nobody asks how the run ends
};
