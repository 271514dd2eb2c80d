#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "checking/finding.h"
#include "checking/grammar.h"
#include "checking/source_document.h"

namespace platform {
class FileSystem;
}

// The systems that a setup is made for.
struct CheckTargets {
    bool windows = true;
    bool linux = true;
};

// What each check gets: the description, its elements by type, and a place for findings. A condition, text or
// attribute is named by its node; findings stand at it.
class CheckContext {
public:
    // All are borrowed and outlive this object. `root` is the directory in which the packager looks files up;
    // without a root nothing is said about the product's files.
    CheckContext(const SourceDocument& source, CheckTargets targets, Findings& findings,
                 platform::FileSystem& files, std::optional<std::string> root);

    const PXML& xml() const { return source_.xml(); }
    CheckTargets targets() const { return targets_; }
    platform::FileSystem& files() const { return files_; }
    const std::optional<std::string>& root() const { return root_; }

    // The type of an element; empty for one that has no place where it stands.
    std::string_view typeOf(std::int32_t node) const;
    const grammar::ElementRule* ruleOf(std::int32_t node) const {
        return types_[static_cast<std::size_t>(node)];
    }
    // All elements of a type, in their order.
    const std::vector<std::int32_t>& nodesOf(std::string_view type) const;
    // The first of them; -1 when there is none.
    std::int32_t firstOf(std::string_view type) const;
    // The nearest element above of this type, or the node itself; -1 when there is none.
    std::int32_t enclosing(std::int32_t node, std::string_view type) const;

    std::string_view text(std::int32_t node) const { return xml().getText(node).value_or(""); }
    std::optional<std::string_view> attribute(std::int32_t node, vocabulary::AttributeName name) const {
        return xml().getAttribute(node, name);
    }

    void addAtElement(FindingCode code, std::int32_t node, std::string message, std::string hint = {}) const;
    void addAtText(FindingCode code, std::int32_t node, std::string message, std::string hint = {}) const;
    void addAtAttribute(FindingCode code, std::int32_t node, std::string_view name, std::string message,
                        std::string hint = {}) const;
    void addAtAttribute(FindingCode code, std::int32_t node, std::size_t attribute, std::string message,
                        std::string hint = {}) const;

private:
    const SourceDocument& source_;
    CheckTargets targets_;
    Findings& findings_;
    platform::FileSystem& files_;
    std::optional<std::string> root_;
    std::vector<const grammar::ElementRule*> types_;
    std::unordered_map<std::string_view, std::vector<std::int32_t>> byType_;
};
