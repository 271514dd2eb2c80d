#include "description/pxml.h"

#include <algorithm>

#include "base/text_functions.h"

namespace {

constexpr std::size_t kArenaBlockSize = 64 * 1024;

// The ends of a path's components: calls `visit` with each, the last one marked; stops when it gives false.
template <typename Visitor>
void forEachComponent(std::string_view path, Visitor visit) {
    if (!path.empty() && path.front() == '/') {
        path.remove_prefix(1);
    }
    for (;;) {
        const std::size_t slash = path.find('/');
        const bool isLast = slash == std::string_view::npos;
        if (!visit(path.substr(0, slash), isLast) || isLast) {
            return;
        }
        path.remove_prefix(slash + 1);
    }
}

std::int32_t firstAbove(const std::vector<std::int32_t>& ascending, std::int32_t bound) {
    const auto found = std::upper_bound(ascending.begin(), ascending.end(), bound);
    return found == ascending.end() ? -1 : *found;
}

}  // namespace

std::string_view PXMLArena::add(std::string_view text) {
    char* copy = reserve(text.size());
    std::copy(text.begin(), text.end(), copy);
    return {copy, text.size()};
}

char* PXMLArena::reserve(std::size_t size) {
    if (blocks_.empty() || capacity_ - used_ < size) {
        const std::size_t blockSize = std::max(size, kArenaBlockSize);
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
        capacity_ = blockSize;
        used_ = 0;
    }
    char* start = blocks_.back().get() + used_;
    used_ += size;
    return start;
}

std::size_t PXML::ChildKeyHash::operator()(const ChildKey& key) const {
    const auto parent = static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.parent));
    const auto nameId = static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.nameId));
    return static_cast<std::size_t>(((parent << 20) ^ nameId) * 0x9E3779B97F4A7C15ULL);
}

const PXMLNode* PXML::getNode(std::int32_t node) const {
    return isNode(node) ? &nodes_[static_cast<std::size_t>(node)] : nullptr;
}

std::optional<std::string_view> PXML::getText(std::int32_t node) const {
    const PXMLNode* record = getNode(node);
    return record == nullptr ? std::nullopt : record->text;
}

std::string_view PXML::getName(std::int32_t node) const {
    const PXMLNode* record = getNode(node);
    return record == nullptr ? std::string_view() : record->name;
}

std::int32_t PXML::nameIdOf(std::string_view name) const {
    const auto found = nameIds_.find(name);
    return found == nameIds_.end() ? -1 : found->second;
}

std::int32_t PXML::addName(std::string_view name) {
    const std::int32_t known = nameIdOf(name);
    if (known >= 0) {
        return known;
    }
    const auto id = static_cast<std::int32_t>(byName_.size());
    nameIds_.emplace(arena_.add(name), id);
    byName_.emplace_back();
    return id;
}

std::int32_t PXML::appendNode(std::int32_t parent, std::string_view name) {
    const std::int32_t index = getNodeCount();
    const std::int32_t nameId = addName(name);
    PXMLNode node;
    node.name = nameIds_.find(name)->first;
    node.index = index;
    node.parent = parent;
    nodes_.push_back(std::move(node));

    if (links_.empty()) {
        links_.emplace_back();  // the top level
    }
    links_.emplace_back().nameId = nameId;
    Links& above = links_[static_cast<std::size_t>(parent + 1)];
    if (above.lastChild < 0) {
        above.firstChild = index;
    } else {
        links_[static_cast<std::size_t>(above.lastChild + 1)].nextSibling = index;
    }
    above.lastChild = index;

    byName_[static_cast<std::size_t>(nameId)].push_back(index);
    children_[ChildKey{parent, nameId}].push_back(index);
    return index;
}

std::int32_t PXML::findByName(std::string_view name, std::int32_t after) const {
    const std::int32_t nameId = nameIdOf(name);
    return nameId < 0 ? -1 : firstAbove(byName_[static_cast<std::size_t>(nameId)], after);
}

std::int32_t PXML::findChild(std::int32_t parent, std::string_view name, std::int32_t after) const {
    const auto found = children_.find(ChildKey{parent, nameIdOf(name)});
    return found == children_.end() ? -1 : firstAbove(found->second, after);
}

std::int32_t PXML::findPath(std::string_view path, std::int32_t start,
                            std::vector<std::int32_t>* trace) const {
    if (start >= getNodeCount()) {
        return -1;
    }
    std::int32_t parent = start < 0 ? -1 : nodes_[static_cast<std::size_t>(start)].parent;
    std::int32_t result = -1;
    forEachComponent(path, [&](std::string_view name, bool) {
        result = name.empty() ? -1 : findChild(parent, name, start);
        if (result >= 0) {
            parent = result;
            if (trace != nullptr) {
                trace->push_back(result);
            }
        }
        return true;
    });
    return result;
}

std::int32_t PXML::findRelative(std::int32_t node, std::string_view path) const {
    std::int32_t level = node;
    std::int32_t result = -1;
    forEachComponent(path, [&](std::string_view name, bool isLast) {
        if (name.empty() && isLast) {
            return false;
        }
        result = name.empty() ? -1 : findChild(level, name);
        level = result;
        return result >= 0;
    });
    return result;
}

void PXML::listChildren(std::int32_t parent, std::vector<std::int32_t>& outNodes) const {
    if (links_.empty() || parent < -1 || parent >= getNodeCount()) {
        return;
    }
    std::int32_t child = links_[static_cast<std::size_t>(parent + 1)].firstChild;
    while (child >= 0) {
        outNodes.push_back(child);
        child = links_[static_cast<std::size_t>(child + 1)].nextSibling;
    }
}

std::vector<std::int32_t> PXML::childrenOf(std::int32_t parent) const {
    std::vector<std::int32_t> nodes;
    listChildren(parent, nodes);
    return nodes;
}

PXMLAttribute* PXML::findAttribute(std::int32_t node, std::string_view name) {
    if (!isNode(node)) {
        return nullptr;
    }
    std::vector<PXMLAttribute>& attributes = nodes_[static_cast<std::size_t>(node)].attributes;
    const auto found = std::find_if(attributes.rbegin(), attributes.rend(), [name](const PXMLAttribute& one) {
        return OUtils::equalsIgnoreCase(one.name, name);
    });
    return found == attributes.rend() ? nullptr : &*found;
}

std::optional<std::string_view> PXML::getAttribute(std::int32_t node, std::string_view name) const {
    const PXMLAttribute* attribute = const_cast<PXML*>(this)->findAttribute(node, name);
    return attribute == nullptr ? std::nullopt : attribute->value;
}

std::optional<std::string_view> PXML::keep(std::optional<std::string_view> text) {
    return text ? std::optional(arena_.add(*text)) : std::nullopt;
}

bool PXML::setAttribute(std::int32_t node, std::string_view name, std::optional<std::string_view> value) {
    if (!isNode(node)) {
        return false;
    }
    const std::optional<std::string_view> copy = keep(value);
    PXMLAttribute* attribute = findAttribute(node, name);
    if (attribute != nullptr) {
        attribute->value = copy;
    } else {
        nodes_[static_cast<std::size_t>(node)].attributes.push_back({arena_.add(name), copy});
    }
    return true;
}

void PXML::setText(std::int32_t node, std::optional<std::string_view> text) {
    PXMLNode& record = nodes_[static_cast<std::size_t>(node)];
    record.text = keep(text);
    record.textLength = text ? static_cast<std::int32_t>(text->size()) : 0;
}

std::int32_t PXML::addPath(std::int32_t parent, std::string_view path, std::optional<std::string_view> value,
                           bool alwaysNew) {
    if (parent < -1 || parent >= getNodeCount()) {
        return -1;
    }
    std::vector<std::string_view> names;
    forEachComponent(path, [&names](std::string_view name, bool) {
        if (!name.empty()) {
            names.push_back(name);
        }
        return true;
    });
    std::int32_t level = parent;
    std::int32_t result = -1;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const bool isLast = i + 1 == names.size();
        result = findChild(level, names[i]);
        if (result < 0 || (isLast && alwaysNew)) {
            result = appendNode(level, names[i]);
            setText(result, "");
        }
        if (isLast) {
            setText(result, value);
        }
        level = result;
    }
    return result;
}

int PXML::walkFrom(std::int32_t node, std::vector<std::int32_t>& trace) {
    return isNode(node) ? walk(node, true, trace) : 0;
}

int PXML::walkChildren(std::int32_t node, std::vector<std::int32_t>& trace) {
    return isNode(node) ? walk(node, false, trace) : 0;
}

int PXML::walk(std::int32_t root, bool withRoot, std::vector<std::int32_t>& trace) {
    std::int32_t node = root;
    std::int32_t depth = 0;
    for (;;) {
        if (withRoot || node != root) {
            trace.push_back(node);
            const int result = onVisit(root, node, depth, trace);
            if (result != 0) {
                return result;
            }
        }
        const std::int32_t child = links_[static_cast<std::size_t>(node + 1)].firstChild;
        if (child >= 0) {
            node = child;
            ++depth;
            continue;
        }
        while (node != root && links_[static_cast<std::size_t>(node + 1)].nextSibling < 0) {
            node = nodes_[static_cast<std::size_t>(node)].parent;
            --depth;
        }
        if (node == root) {
            return 0;
        }
        node = links_[static_cast<std::size_t>(node + 1)].nextSibling;
    }
}

int PXML::onVisit(std::int32_t /*ancestor*/, std::int32_t /*node*/, std::int32_t /*depth*/,
                  std::vector<std::int32_t>& /*trace*/) {
    return 0;
}
