#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/p_list.h"
#include "description/command_line_arguments.h"

// The options of the command line, in order. Names and values are UTF-8, belong to this object and keep their
// addresses for its whole lifetime.
class CommandLineParameters : public CommandLineArguments {
public:
    CommandLineParameters();
    ~CommandLineParameters() override;
    CommandLineParameters(const CommandLineParameters&) = delete;
    CommandLineParameters& operator=(const CommandLineParameters&) = delete;

    // Reads the tokens after the program's name: "-name=value", "--name=value", "-name value", "-name". The
    // double quotes around a value are removed. 0, or -1 for a word that isn't the value of an option; the
    // options before it are kept then. Called once.
    int parse(const std::vector<std::string>& tokens);

    // The value of the first option with exactly this name, empty when it had none; nothing when the option
    // wasn't given.
    std::optional<std::string_view> find(std::string_view name) const;

    int getCount() const { return records_.getCount(); }
    // 0 <= index < getCount(), unchecked.
    std::string_view name(int index) const;
    std::string_view value(int index) const;

    int getArgumentCount() const override { return getCount(); }
    std::string_view getArgumentName(int index) const override { return name(index); }
    std::string_view getArgumentValue(int index) const override { return value(index); }
    bool isArgumentEmptied(int index) const override;

private:
    struct Record;

    Record* open(const std::string& token, bool& outHasValue, std::string& outValue);

    PList<Record*> records_;  // owned
};
