#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class CheckContext;

// An element of the description that names a packed file by its alias.
struct AliasUse {
    enum class Kind { kDocument, kPicture, kSlides, kCreatedFile, kIcon };

    Kind kind;
    std::int32_t node;
    std::string alias;       // of slides, that of the first without its number
    std::int32_t count = 1;  // of slides
};

// In the order of the description. Elements of an uninstallation are left out: it has no packed files. So are
// texts whose aliases only a run knows.
std::vector<AliasUse> aliasUsesOf(const CheckContext& context);

// Whether there is an action whose alias only a run knows.
bool hasOpenAlias(const CheckContext& context);

// A picture has an alias of its own, and larger forms whose aliases are these.
std::vector<std::string> formsOf(std::string_view alias);

// The alias without what marks a larger form.
std::string_view withoutForm(std::string_view alias);

// The aliases that pages, actions and the window itself use.
class UsedAliases {
public:
    // With pictures alone documents and files of actions don't count.
    enum class Which { kAll, kPictures };

    UsedAliases(const std::vector<AliasUse>& uses, Which which);

    // Whether something uses this alias, or may use it as the larger form of another one.
    bool contains(std::string_view alias) const;

private:
    bool isSlide(std::string_view alias) const;

    std::unordered_set<std::string> names_;
    std::unordered_map<std::string, std::int32_t> slides_;  // how many there are
};
