#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "description/answers_file.h"
#include "description/command_line_arguments.h"
#include "description/default_values_reader.h"
#include "description/description_fixture.h"
#include "description/log_variable_source.h"
#include "fakes/fake_system_operations.h"

// A command line that a test fills.
class TableArguments : public CommandLineArguments {
public:
    std::vector<std::pair<std::string, std::string>> list;
    std::set<int> emptied;  // the options, by their place, that have an `=` and no value

    int getArgumentCount() const override { return static_cast<int>(list.size()); }
    std::string_view getArgumentName(int index) const override {
        return list[static_cast<std::size_t>(index)].first;
    }
    std::string_view getArgumentValue(int index) const override {
        return list[static_cast<std::size_t>(index)].second;
    }
    bool isArgumentEmptied(int index) const override { return emptied.contains(index); }
};

// Action logs that a test fills.
class TableLogs : public LogVariableSource {
public:
    std::map<std::string, std::string> values;  // by "log:name"

    std::optional<std::string> findVariableInLog(std::string_view logPath, std::string_view name) override {
        const auto found = values.find(std::string(logPath) + ":" + std::string(name));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
};

// What default values are read with.
class DefaultValuesFixture : public DescriptionTest {
protected:
    FakeSystemOperations system_;
    TableLogs logs_;
    TableArguments arguments_;
    const CommandLineArguments* commandLine_ = &arguments_;
    AnswersFile answers_{files_};
    DefaultValueSources sources_{system_, environment_, files_, logs_, answers_};
};
