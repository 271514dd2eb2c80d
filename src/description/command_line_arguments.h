#pragma once

// The parsed command line, as the description reads it.
class CommandLineArguments {
public:
    virtual ~CommandLineArguments() = default;

    virtual int getArgumentCount() const = 0;
    // 0 <= index < getArgumentCount(). Never null; the value is empty where the option had none.
    virtual const char* getArgumentName(int index) const = 0;
    virtual const char* getArgumentValue(int index) const = 0;
};
