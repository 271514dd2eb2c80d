#include "engine/description_tags.h"

#include <cstring>

#include "base/path_functions.h"
#include "description/expressions.h"
#include "description/pxml.h"

namespace {

constexpr std::size_t kFirstCapacity = 4096;

std::string trimmedToTerminator(std::string text) {
    text.resize(std::strlen(text.c_str()));
    return text;
}

}  // namespace

std::int32_t DescriptionTags::nextGroup(const char* name, std::int32_t after) {
    std::int32_t node = description_.findByName(name, after);
    while (node >= 0 && !conditionHolds(node)) {
        node = description_.findByName(name, node);
    }
    return node;
}

std::int32_t DescriptionTags::firstOf(const char* name) {
    return description_.findByName(name);
}

std::vector<std::int32_t> DescriptionTags::childrenOf(std::int32_t node) {
    std::vector<std::int32_t> children;
    description_.listChildren(node, children);
    return children;
}

const char* DescriptionTags::nameOf(std::int32_t node) {
    return description_.getName(node);
}

const char* DescriptionTags::textOf(std::int32_t node) {
    return description_.getText(node);
}

const char* DescriptionTags::attribute(std::int32_t node, const char* name) {
    return description_.getAttribute(node, name);
}

bool DescriptionTags::holds(const char* condition) {
    return expressions_.evaluateCondition(condition) != 0;
}

bool DescriptionTags::isSet(std::int32_t node, const char* name) {
    const char* condition = attribute(node, name);
    return condition != nullptr && holds(condition);
}

std::string DescriptionTags::expand(const char* text, bool stopOnMissing) {
    std::string result;
    // An expansion that fills its buffer may have been cut: it gets another try with more room.
    for (std::size_t capacity = kFirstCapacity; capacity <= kTextLimit; capacity *= 4) {
        result.assign(capacity, '\0');
        if (expressions_.expandVariables(text, result.data(), static_cast<int>(capacity), stopOnMissing) ==
            0) {
            return {};
        }
        result = trimmedToTerminator(std::move(result));
        if (result.size() + 1 < capacity) {
            break;
        }
    }
    return result;
}

std::string collapsedPath(std::string path) {
    OUtils::collapseSeparators(path.data());
    return trimmedToTerminator(std::move(path));
}

std::string normalizedPath(std::string path) {
    OUtils::normalizePath(path.data());
    return trimmedToTerminator(std::move(path));
}
