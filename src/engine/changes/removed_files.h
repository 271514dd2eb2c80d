#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

// The product's own files that an uninstallation has deleted, or found missing. What was changed inside them
// is gone with them.
class RemovedFiles {
public:
    void add(std::string_view path);
    // The spelling of separators and the case of ASCII letters don't count.
    bool contains(std::string_view path) const;

private:
    std::unordered_set<std::string> paths_;
};
