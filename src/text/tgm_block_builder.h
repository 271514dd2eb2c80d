#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/tgm_limits.h"
#include "text/tgm_line.h"
#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"

// The place of some lines in the whole text: the lines of a quote are parsed as a text of their own.
struct TGMParseScope {
    TGMTree& tree;  // of the whole text, as the budget is
    TGMWorkBudget& budget;
    std::uint32_t depth = 0;      // of the node that receives the lines
    std::uint32_t firstLine = 0;  // the number of the first of the lines
};

// Parses lines as a text of their own and returns its root, adding what went wrong to `result`.
using TGMLineParser = TGMNodePtr (*)(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                                     const TGMParseScope& scope, TGMParseResult& result);

// The first phase: turns lines into the nodes of blocks, whose texts still hold their emphasis.
class TGMBlockBuilder {
public:
    // All are borrowed. What goes wrong is added to `result`. `parseQuote` parses the lines of each quote,
    // with both phases, since a quote is a whole text.
    TGMBlockBuilder(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                    const TGMParseScope& scope, TGMParseResult& result, TGMLineParser parseQuote);

    // Appends the blocks of all lines to `root`. Stops at an error, unless the options say to go on, and in
    // any case when the budget is exhausted.
    void build(TGMNode& root);

private:
    // Both ends are inclusive.
    struct Range {
        std::size_t first;
        std::size_t last;
    };
    struct ListItems {
        std::vector<std::size_t> starts;
        TGMNodeType textType = kTgmPlain;
    };

    // `depth` is always that of the given node.
    void buildBlocks(TGMNode& parent, Range range, std::uint32_t depth);
    std::size_t buildBlock(TGMNode& parent, std::size_t first, std::uint32_t depth);
    TGMNodePtr buildPlain(Range block);
    std::string_view join(std::string_view text, std::string_view line);
    TGMNodePtr buildHeading(std::size_t line);
    TGMNodePtr buildList(Range block, std::uint32_t depth);
    TGMNodePtr buildItem(Range item, TGMNodeType textType, std::uint32_t depth);
    TGMNodePtr buildQuote(std::size_t first, std::size_t end, std::uint32_t depth);

    ListItems findItems(Range block, TGMNodeType listType) const;
    std::vector<TGMLine> collectQuote(std::size_t first, std::size_t end,
                                      const TGMParseOptions& quoteOptions) const;
    void noteJoinedLine(std::size_t line);
    void noteNumbers(const ListItems& items, TGMNodeType listType);
    void noteQuote(std::size_t first, std::size_t end);
    void note(TGMLossKind kind, std::size_t line);
    TGMNodePtr makeNode(TGMNodeType type, std::string_view text, std::size_t line);
    Range clamp(std::size_t first, std::size_t last) const;
    bool spend(std::uint64_t work, std::size_t line);
    bool isTooDeep(std::uint32_t depth, std::size_t line);
    bool mustStop() const;
    std::uint32_t lineNumber(std::size_t line) const;

    const std::vector<TGMLine>& lines_;
    const TGMParseOptions& options_;
    TGMParseScope scope_;
    TGMParseResult& result_;
    const TGMLineParser parseQuote_;
    std::string text_;  // the lines joined so far
};
