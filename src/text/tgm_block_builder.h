#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/tgm_line_parser.h"

// The first phase: turns lines into the nodes of blocks, whose texts still hold their emphasis.
class TGMBlockBuilder {
public:
    // All are borrowed. `result` is added to.
    TGMBlockBuilder(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                    const TGMParseScope& scope, TGMParseResult& result);

    // Appends the blocks of all lines to `root`. An error stops it, unless the options say to go on; nothing
    // goes on when the budget is exhausted.
    void build(TGMNode& root);

private:
    // Both ends belong to a range.
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
    std::string text_;  // what is joined
};
