#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CheckContext;

// An element of the description that names a packed file by its alias.
struct AliasUse {
    enum class Kind { kDocument, kPicture, kSlides, kCreatedFile };

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

// The aliases of a slide show, one for each slide; at most `most`.
std::vector<std::string> slidesOf(const AliasUse& use, std::size_t most);

// A picture has an alias of its own, and larger forms whose aliases are these.
std::vector<std::string> formsOf(std::string_view alias);

// The alias without what marks a larger form.
std::string_view withoutForm(std::string_view alias);

// Whether the window looks for this picture by itself.
bool isPictureOfWindow(std::string_view alias);
