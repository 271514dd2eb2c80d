#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

class InstallExchangeInfo;

// Where a page is in the description. A `sub` of -1 means the dialog itself.
struct PagePosition {
    int dialog = -1;
    int sub = -1;

    bool operator==(const PagePosition&) const = default;
    bool operator<(const PagePosition& other) const {
        return std::pair(dialog, sub) < std::pair(other.dialog, other.sub);
    }
};

// The pages of a description by their names in a preview. A frame around other pages is none itself.
class PageList {
public:
    // `phase` is what the names begin with. The engine has read its description; it isn't kept.
    PageList(InstallExchangeInfo& engine, std::string_view phase);

    // The page that a console shows: in the place of a frame its first page, to which the frame's words
    // belong.
    PagePosition pageAt(PagePosition position) const;
    // Such as "install-03-Notes". Fit for the name of a file on every
    // system; empty for a frame and for no page.
    std::string fileNameOf(PagePosition page) const;

private:
    void add(PagePosition position, std::string_view name);

    std::string phase_;
    std::map<PagePosition, std::string> names_;
};

// Of the name letters, digits, `-` and `_` stay, others become `_`; it is cut to 40 characters.
std::string fileNamePart(std::string_view name);
