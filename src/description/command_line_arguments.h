#pragma once

#include <string_view>

// The parsed command line, as the description reads it.
class CommandLineArguments {
public:
    virtual ~CommandLineArguments() = default;

    virtual int getArgumentCount() const = 0;
    // 0 <= index < getArgumentCount(). The value is empty where the option had none. The views are good as
    // long as this object.
    virtual std::string_view getArgumentName(int index) const = 0;
    virtual std::string_view getArgumentValue(int index) const = 0;
    // Whether the option was written with an `=` and nothing after it, unlike one that is a mere switch.
    virtual bool isArgumentEmptied(int index) const = 0;
};
