#pragma once

// Reading a variable: all that expansions and conditions need of the variable store.
class VariableLookup {
public:
    virtual ~VariableLookup() = default;

    // The value goes into `buffer` (which may be null) of `size` bytes, cut to it and terminated. Returns the
    // variable's index (0 or greater), -2 for a predefined variable or one of the environment, -1 when there
    // is none, also for a null or empty name. Names ignore ASCII case; a leading `$` means the environment.
    virtual int getVariable(const char* name, char* buffer, int size) = 0;
};
