#include "session/command_line_parameters.h"

namespace {

constexpr int kGrowthStep = 100;

std::string withoutQuotes(const std::string& value) {
    const bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

struct CommandLineParameters::Record {
    std::string name;
    std::string value;
    bool hasEquals = false;
};

CommandLineParameters::CommandLineParameters() : records_(kGrowthStep) {}

CommandLineParameters::~CommandLineParameters() {
    for (const Record* record : records_) {
        delete record;
    }
}

CommandLineParameters::Record* CommandLineParameters::open(const std::string& token, bool& outHasValue,
                                                           std::string& outValue) {
    const std::size_t start = token.starts_with("--") ? 2 : 1;
    const std::size_t equals = token.find('=', start);
    outHasValue = equals != std::string::npos;
    outValue = outHasValue ? token.substr(equals + 1) : std::string();
    auto record = std::make_unique<Record>();
    record->name = token.substr(start, outHasValue ? equals - start : std::string::npos);
    record->hasEquals = outHasValue;
    records_.append(record.get());
    return record.release();
}

int CommandLineParameters::parse(const std::vector<std::string>& tokens) {
    Record* current = nullptr;  // the option that still waits for its value
    for (const std::string& token : tokens) {
        if (token.empty()) {
            continue;
        }
        bool hasValue = true;
        std::string value = token.substr(token[0] == '=' ? 1 : 0);
        if (token[0] == '-') {
            current = open(token, hasValue, value);
        }
        if (current == nullptr) {
            return -1;
        }
        if (hasValue && !value.empty()) {
            current->value = withoutQuotes(value);
            current = nullptr;
        }
    }
    return 0;
}

std::optional<std::string_view> CommandLineParameters::find(std::string_view name) const {
    for (const Record* record : records_) {
        if (record->name == name) {
            return record->value;
        }
    }
    return std::nullopt;
}

std::string_view CommandLineParameters::name(int index) const {
    return records_.at(index)->name;
}

std::string_view CommandLineParameters::value(int index) const {
    return records_.at(index)->value;
}

bool CommandLineParameters::isArgumentEmptied(int index) const {
    const Record& record = *records_.at(index);
    return record.hasEquals && record.value.empty();
}
