#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

class ControlVariables;
class DialogModel;
class PXML;
class VariableStore;

// What a variable is kept out of.
enum ExclusionBit : std::uint32_t {
    kExcludeFromLog = 1,
    kExcludeFromConfig = 2,
    kExcludeFromAll = 3,
};

// The variables that stay out of the action log or of the exported configuration file. Names compare exactly,
// unlike everywhere else: a variable stored under another spelling than its entry isn't excluded.
class VariableExclusions {
public:
    // A name may be added more than once; the bits of its entries add up. An empty name adds nothing.
    void add(std::string_view name, std::uint32_t mask);
    // True unless an entry of that name has the bit set.
    bool isVariableExported(std::string_view name, ExclusionBit bit) const;

    // Adds the control variables, the validation variables of all fields (which are stored with the value and
    // the expression "1"), and the children of InstallerExcludeVariables.
    void build(const PXML& description, const ControlVariables& controls, const DialogModel& dialogs,
               VariableStore& variables);

private:
    void addControls(const ControlVariables& controls);
    void addValidationVariables(const DialogModel& dialogs, VariableStore& variables);
    void addListed(const PXML& description);

    std::unordered_map<std::string, std::uint32_t> masks_;
};
