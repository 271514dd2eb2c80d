#include "text/tgm_finalizer.h"

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
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\') {
            marks.hasBackslash = true;
            ++i;
        } else if (text[i] == '*') {
            ++marks.stars;
        } else if (text[i] == '_') {
            ++marks.underscores;
        }
    }
    return marks;
}

class Finalizer {
public:
    Finalizer(TGMWorkBudget& budget, TGMParseResult& result) : budget_(budget), result_(result) {}

    void finalize(TGMNode& node, std::uint32_t depth) {
        if (!node.text.isEmpty()) {
            resolveText(node, depth);
        }
        for (const std::unique_ptr<TGMNode>& child : node.children) {
            if (budget_.isExhausted()) {
                return;
            }
            finalize(*child, depth + 1);
        }
    }

private:
    void resolveText(TGMNode& node, std::uint32_t depth) {
        const std::string_view text = node.text.c_str();
        if (!spend(text.size() * kTgmLineVisitCost)) {
            return;
        }
        const Marks marks = countMarks(text);
        if (marks.hasEmphasis()) {
            resolveEmphasis(node, text, depth);
        } else if (marks.hasBackslash) {
            node.text = CharString(unescapeTgmText(text).c_str());
        }
    }

    void resolveEmphasis(TGMNode& node, std::string_view text, std::uint32_t depth) {
        scanTgmSpans(text, pieces_);
        if (pieces_.size() == 1 && pieces_.front().text.size() == text.size()) {
            result_.add(kTgmInvalidEmphasis);
        } else if (pieces_.size() == 1 && node.type == kTgmPlain) {
            // Such a text shows its delimiters inside the emphasis.
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
        const CharString owner = std::exchange(node.text, CharString());  // the pieces lie in it
        node.children.reserve(pieces_.size());
        for (const TGMPiece& piece : pieces_) {
            if (!spend(kTgmNodeCost + piece.text.size() * kTgmByteCost)) {
                return;
            }
            node.children.push_back(makeChild(piece));
        }
        if (pieces_.size() > 1 && node.type == kTgmPlain) {
            node.type = kTgmComposite;
        }
    }

    std::unique_ptr<TGMNode> makeChild(const TGMPiece& piece) {
        auto child = std::make_unique<TGMNode>();
        child->type = piece.type;
        scratch_ = piece.text;
        child->text = CharString(scratch_.c_str());
        return child;
    }

    bool spend(std::uint64_t work) {
        if (budget_.spend(work)) {
            return true;
        }
        result_.add(kTgmInvalidBlock);
        return false;
    }

    TGMWorkBudget& budget_;
    TGMParseResult& result_;
    std::vector<TGMPiece> pieces_;
    std::string scratch_;
};

}  // namespace

TGMParseResult finalizeTgmNode(TGMNode& node, std::uint32_t depth, TGMWorkBudget& budget) {
    TGMParseResult result;
    Finalizer(budget, result).finalize(node, depth);
    return result;
}

std::string unescapeTgmText(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() &&
            kEscapable.find(text[i + 1]) != std::string_view::npos) {
            ++i;
        }
        plain += text[i];
    }
    return plain;
}
