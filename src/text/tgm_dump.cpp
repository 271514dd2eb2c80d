#include "text/tgm_dump.h"

#include <array>
#include <cstdio>

namespace {

constexpr std::array<std::string_view, kTgmComposite + 1> kTypeNames = {
    "NONE", "BLNK", "DOC ", "PLN ", "PAR ", "BOLD", "ITAL", "UNLI", "OLNU", "OLAL",
    " LI ", " H1 ", " H2 ", " H3 ", " H4 ", " H5 ", " H6 ", "BLKQ", "CMPS"};

std::string rightAligned(std::size_t number) {
    std::array<char, 24> digits{};
    std::snprintf(digits.data(), digits.size(), "%4zu", number);
    return digits.data();
}

void dumpNode(std::string& out, const TGMNode& node, std::size_t depth) {
    for (std::size_t i = 0; i < depth; ++i) {
        out += "|     ";
    }
    out += "+[";
    out += getTgmTypeName(node.type);
    out += ']';
    if (!node.text.isEmpty()) {
        out += " : ";
        out += node.text.view();
    }
    out += '\n';
    for (const TGMNodePtr& child : node.children) {
        dumpNode(out, *child, depth + 1);
    }
}

}  // namespace

std::string_view getTgmTypeName(TGMNodeType type) {
    return kTypeNames.at(type);
}

void dumpTgmLine(std::string& out, std::size_t number, const TGMLine& line, std::size_t blockEnd) {
    out += rightAligned(number) + " : [";
    out += getTgmTypeName(line.type());
    out += "] (" + rightAligned(blockEnd) + ")";
    if (!line.payload().empty()) {
        out += ' ';
        out += line.payload();
    }
    out += '\n';
}

void dumpTgmTree(std::string& out, const TGMNode& node) {
    dumpNode(out, node, 0);
}
