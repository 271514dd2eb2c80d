#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <unordered_set>

// Finds out whether any of many names stands in a text, case included. The time for a text depends on the
// text and on how many lengths the names have, not on how many names there are.
class NameSearch {
public:
    // `name` must outlive the object. An empty name stands in every text.
    void add(std::string_view name) { namesByLength_[name.size()].insert(name); }
    bool isAnyIn(std::string_view text) const;

private:
    std::map<std::size_t, std::unordered_set<std::string_view>> namesByLength_;
};
