#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class CheckContext;
class DeclaredVariables;
struct DeclaredVariable;

// The paths that texts with references stand for, as far as the description says. A reference to what only a
// run knows stays in them, as [name] in lower case.
class PathValues {
public:
    // Which of its values each variable with several has.
    using Choice = std::map<std::string, std::size_t>;
    // More choices than these are not looked at.
    static constexpr std::size_t kMostChoices = 16;

    // Both are borrowed and outlive this object.
    PathValues(const CheckContext& context, const DeclaredVariables& variables);
    // These values where users leave what they are asked for as it is. Borrows the same.
    PathValues unchanged() const;

    // With `/` between the parts and none at the end, unless it is a root. Without a choice a variable with
    // several values stays a reference. Empty for an empty text.
    std::string resolve(std::string_view text, const Choice& choice = {}) const;
    // All choices among the variables that the text refers to: one without any if there are none with several
    // values. Empty when there are too many.
    std::vector<Choice> choicesOf(std::string_view text) const;
    // The environment variable, in lower case, whose value a reference in a resolved path is, given without
    // its brackets. Empty when it is another one.
    std::string environmentOf(std::string_view reference) const;
    // Whether the description has an expression for the variable of such a reference, which its users may
    // still change.
    bool isDescribed(std::string_view reference) const;

private:
    using Values = std::unordered_map<std::string, std::string>;

    std::string expand(std::string_view text, const Choice& choice, Values& known, int depth) const;
    std::string valueOf(std::string_view name, const Choice& choice, Values& known, int depth) const;
    std::vector<std::string_view> expressionsOf(std::string_view name) const;
    void addChoices(std::string_view text, std::map<std::string, std::size_t>& counts, int depth) const;

    const CheckContext& context_;
    const DeclaredVariables& variables_;
    bool isUnchanged_ = false;
    mutable Values known_;  // without a choice
};

// Whether two resolved paths name the same thing.
enum class PathMatch {
    kSame,
    kPossible,  // it depends on what only a run knows
    kDifferent,
};
PathMatch matchPaths(std::string_view a, std::string_view b);

// Whether a path begins with a reference. Brackets that hold no name of a variable are no reference.
bool beginsWithReference(std::string_view path);
// Whether a resolved path depends on what only a run knows.
bool hasReference(std::string_view path);
