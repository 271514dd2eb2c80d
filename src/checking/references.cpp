#include "checking/references.h"

#include <algorithm>

namespace {

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isNameCharacter(char c) {
    return isLetterOrDigit(c) || c == '_' || c == '$';
}

}  // namespace

std::vector<Reference> bracketReferences(std::string_view text) {
    std::vector<Reference> found;
    for (std::size_t at = text.find('['); at != std::string_view::npos; at = text.find('[', at)) {
        const bool begins = at + 1 == text.size() || isNameCharacter(text[at + 1]);
        if (!begins) {
            ++at;
            continue;
        }
        const std::size_t close = text.find(']', at);
        const bool isClosed = close != std::string_view::npos;
        const std::size_t end = isClosed ? close + 1 : text.size();
        found.push_back({text.substr(at + 1, end - at - (isClosed ? 2 : 1)), at, end, isClosed});
        at = end;
    }
    return found;
}

std::vector<Reference> dollarReferences(std::string_view text) {
    std::vector<Reference> found;
    for (std::size_t at = text.find('$'); at != std::string_view::npos; at = text.find('$', at)) {
        const std::string_view rest = text.substr(at + 1);
        const auto* const stop = std::ranges::find_if_not(rest, isNameCharacter);
        const std::string_view name = rest.substr(0, static_cast<std::size_t>(stop - rest.begin()));
        found.push_back({name, at, at + 1 + name.size(), true});
        at += 1 + name.size();
    }
    return found;
}

bool isPlainVariableName(std::string_view name) {
    return !name.empty() && std::ranges::all_of(name, [](char c) { return isLetterOrDigit(c) || c == '_'; });
}

bool isReferenceName(std::string_view name) {
    return isEnvironmentName(name) ? name.size() > 1 : isPlainVariableName(name);
}

bool isEnvironmentName(std::string_view name) {
    return name.starts_with('$');
}
