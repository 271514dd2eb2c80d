#include "checking/check_context.h"

#include <utility>

CheckContext::CheckContext(const SourceDocument& source, CheckTargets targets, Findings& findings,
                           platform::FileSystem& files, std::optional<std::string> root)
    : source_(source),
      targets_(targets),
      findings_(findings),
      files_(files),
      root_(std::move(root)),
      types_(grammar::typesOf(source.xml())) {
    for (std::size_t i = 0; i < types_.size(); ++i) {
        if (types_[i] != nullptr) {
            byType_[types_[i]->type].push_back(static_cast<std::int32_t>(i));
        }
    }
}

std::string_view CheckContext::typeOf(std::int32_t node) const {
    const grammar::ElementRule* const rule = ruleOf(node);
    return rule == nullptr ? std::string_view() : rule->type;
}

const std::vector<std::int32_t>& CheckContext::nodesOf(std::string_view type) const {
    static const std::vector<std::int32_t> kNone;
    const auto found = byType_.find(type);
    return found == byType_.end() ? kNone : found->second;
}

std::int32_t CheckContext::firstOf(std::string_view type) const {
    const std::vector<std::int32_t>& nodes = nodesOf(type);
    return nodes.empty() ? -1 : nodes.front();
}

std::int32_t CheckContext::enclosing(std::int32_t node, std::string_view type) const {
    while (node >= 0 && typeOf(node) != type) {
        node = xml().getNode(node)->parent;
    }
    return node;
}

void CheckContext::addAtElement(FindingCode code, std::int32_t node, std::string message,
                                std::string hint) const {
    findings_.add(code, source_.placeOf(node), std::move(message), std::move(hint));
}

void CheckContext::addAtText(FindingCode code, std::int32_t node, std::string message,
                             std::string hint) const {
    findings_.add(code, source_.placeOfText(node), std::move(message), std::move(hint));
}

void CheckContext::addAtAttribute(FindingCode code, std::int32_t node, std::string_view name,
                                  std::string message, std::string hint) const {
    findings_.add(code, source_.placeOfAttribute(node, name), std::move(message), std::move(hint));
}

void CheckContext::addAtAttribute(FindingCode code, std::int32_t node, std::size_t attribute,
                                  std::string message, std::string hint) const {
    findings_.add(code, source_.placeOfAttribute(node, attribute), std::move(message), std::move(hint));
}
