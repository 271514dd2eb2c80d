#include "packager/tree_lines.h"

#include <string_view>

#include "base/path_functions.h"
#include "description/pxml_entities.h"

namespace {

std::string attribute(std::string_view name, std::string_view value) {
    std::string text = " ";
    text.append(name).append("=\"");
    PXMLEntities::appendEscaped(text, value);
    return text + "\"";
}

std::string attributeIfAny(std::string_view name, const std::optional<std::string>& value) {
    return value ? attribute(name, *value) : "";
}

std::string element(std::string_view name, const std::string& attributes, std::string_view content) {
    std::string text = "<";
    text.append(name).append(attributes).append(">");
    PXMLEntities::appendEscaped(text, content);
    return text.append("</").append(name).append(">");
}

std::string destOf(const TreeRequest& tree, const std::string& path) {
    const std::size_t separator = path.rfind('/');
    return separator == std::string::npos ? tree.dest : tree.dest + "/" + path.substr(0, separator);
}

std::string fileLine(const TreeRequest& tree, const TreeFile& file) {
    std::string attributes = attribute("Dest", destOf(tree, file.item.path));
    attributes += file.alias.empty() ? "" : attribute("Alias", file.alias);
    for (const auto& [name, value] : tree.handedOn) {
        attributes += attribute(name, value);
    }
    if (tree.keepsModes && file.item.isProgram && !tree.isExecutable) {
        attributes += attribute("Executable", "1");
    }
    return element("FN", attributes, tree.from.empty() ? file.item.path : tree.from + "/" + file.item.path);
}

std::string linkLine(const TreeRequest& tree, const TreeItem& item) {
    const std::string attributes = attribute("Type", "Symlink") + attribute("Dest", destOf(tree, item.path)) +
                                   attributeIfAny("Target", item.link) +
                                   attributeIfAny("Condition", tree.condition);
    return element("Add", attributes, OUtils::lastPathComponent(item.path));
}

}  // namespace

std::string treeLines(const TreeRequest& tree, const std::vector<TreeFile>& files,
                      const std::string& lineEnd) {
    std::string lines;
    std::string links;
    for (const TreeFile& file : files) {
        if (file.item.link) {
            links += lineEnd + "  " + linkLine(tree, file.item);
        } else {
            lines += (lines.empty() ? "" : lineEnd) + fileLine(tree, file);
        }
    }
    if (!links.empty()) {
        lines += (lines.empty() ? "" : lineEnd) + "<Shortcuts" +
                 attributeIfAny("Condition", tree.setCondition) + ">" + links + lineEnd + "</Shortcuts>";
    }
    return lines;
}
