#pragma once

class PConsole;
class VariableLookup;

// The work behind Expressions, for those that are below it. Contracts as there; `console` may be null.
int expandBracketVariables(VariableLookup& variables, PConsole* console, const char* source,
                           char* destination, int size, bool stopOnMissing);
int expandDollarVariables(VariableLookup& variables, const char* source, char* destination, int size);
