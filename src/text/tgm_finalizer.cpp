#include "text/tgm_finalizer.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "text/tgm_span_scan.h"

namespace {

constexpr std::string_view kEscapable = "\\*_#+-.";

struct Marks {
    std::size_t stars = 0;
    std::size_t underscores = 0;
    bool hasBackslash = false;

    bool hasEmphasis() const { return stars >= 2 || underscores >= 2; }
};

Marks countMarks(std::string_view text) {
    Marks marks;
    for (std::size_t i = findTgmMark(text, 0); i < text.size(); i = findTgmMark(text, i + 1)) {
        if (text[i] == '\\') {
            marks.hasBackslash = true;
            ++i;
        } else if (text[i] == '*') {
            ++marks.stars;
        } else {
            ++marks.underscores;
        }
    }
    return marks;
}

class Finalizer {
public:
    Finalizer(TGMTree& tree, TGMWorkBudget& budget, TGMParseResult& result)
        : tree_(tree), budget_(budget), result_(result) {}

    void finalize(TGMNode& node, std::uint32_t depth) {
        if (!node.text.isEmpty()) {
            resolveText(node, depth);
        }
        for (const TGMNodePtr& child : node.children) {
            if (budget_.isExhausted()) {
                return;
            }
            finalize(*child, depth + 1);
        }
    }

private:
    void resolveText(TGMNode& node, std::uint32_t depth) {
        const std::string_view text = node.text.view();
        if (!spend(text.size() * kTgmLineVisitCost)) {
            return;
        }
        const Marks marks = countMarks(text);
        if (marks.hasEmphasis()) {
            resolveEmphasis(node, text, depth);
        } else if (marks.hasBackslash) {
            unescapeTgmText(node.text);
        }
    }

    void resolveEmphasis(TGMNode& node, std::string_view text, std::uint32_t depth) {
        scanTgmSpans(text, pieces_);
        if (pieces_.size() == 1 && pieces_.front().text.size() == text.size()) {
            result_.add(kTgmInvalidEmphasis);
        } else if (pieces_.size() == 1 && node.type == kTgmPlain) {
            // The text keeps its delimiters and shows them inside the emphasis: that is part of the dialect.
            node.type = pieces_.front().type;
        } else {
            turnIntoChildren(node, depth);
        }
    }

    void turnIntoChildren(TGMNode& node, std::uint32_t depth) {
        if (depth + 1 > kTgmMaxDepth) {
            result_.add(kTgmInvalidBlock);
            return;
        }
        if (!spend(pieces_.size() * kTgmNodeCost + node.text.view().size() * kTgmByteCost)) {
            return;
        }
        TGMText text = std::exchange(node.text, TGMText());
        node.children.reserve(pieces_.size());
        for (const TGMPiece& piece : pieces_) {
            node.children.push_back(makeChild(piece, text));
        }
        if (node.type == kTgmPlain) {
            node.type = kTgmComposite;
        }
    }

    // The child takes over the bytes of its piece; pieces don't overlap.
    TGMNodePtr makeChild(const TGMPiece& piece, TGMText& text) {
        TGMNodePtr child = tree_.makeNode(piece.type);
        const auto begin = static_cast<std::size_t>(piece.text.data() - text.bytes().data());
        child->text = TGMText(text.bytes().subspan(begin, piece.text.size()));
        return child;
    }

    bool spend(std::uint64_t work) {
        if (budget_.spend(work)) {
            return true;
        }
        result_.add(kTgmInvalidBlock);
        return false;
    }

    TGMTree& tree_;
    TGMWorkBudget& budget_;
    TGMParseResult& result_;
    std::vector<TGMPiece> pieces_;
};

}  // namespace

TGMParseResult finalizeTgmNode(TGMNode& node, std::uint32_t depth, TGMTree& tree, TGMWorkBudget& budget) {
    TGMParseResult result;
    Finalizer(tree, budget, result).finalize(node, depth);
    return result;
}

void unescapeTgmText(TGMText& text) {
    const std::string_view escaped = text.view();
    std::size_t length = 0;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] == '\\' && i + 1 < escaped.size() &&
            kEscapable.find(escaped[i + 1]) != std::string_view::npos) {
            ++i;
        }
        text.bytes()[length++] = escaped[i];
    }
    text = TGMText(text.bytes().first(length));
}
