#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class CheckContext;

// A variable of a description.
struct DeclaredVariable {
    std::string name;                  // as it is declared first
    std::vector<std::int32_t> values;  // its Values in DefValues, in their order
    bool isControl = false;            // InstallerControlVariables names it
    bool isAssigned = false;           // a trigger or a button sets it
    bool isAsked = false;              // a field asks for it
    bool isText = false;               // a field takes any text for it
    bool isValidation = false;         // it tells whether a field is valid
};

// The variables of a description and what is known of them. Names are not case-sensitive.
class DeclaredVariables {
public:
    explicit DeclaredVariables(const CheckContext& context);

    // Null when nothing declares or sets it. The predefined ones are not among them.
    const DeclaredVariable* find(std::string_view name) const;
    // In the order of their declaration.
    const std::vector<const DeclaredVariable*>& all() const { return ordered_; }
    std::vector<std::string_view> names() const;

    // The values that it may have before anybody is asked, where those are literal.
    std::vector<std::string> knownValues(std::string_view name) const;

private:
    DeclaredVariable& add(std::string_view name);
    void addValues();
    void addControlVariables();
    void addFields();
    void addAssignments();

    const CheckContext& context_;
    std::unordered_map<std::string, DeclaredVariable> variables_;
    std::vector<const DeclaredVariable*> ordered_;
};

// The variables that the action of a button sets. Nothing for `Cancel` and `Help`; `outIsValid` is false when
// the text is neither of these nor a list of assignments [NAME]='value', separated by `;`.
std::vector<std::string> assignedBy(std::string_view action, bool& outIsValid);
