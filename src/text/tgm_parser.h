#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"

class TGMTranslator;

// Parses a text of the markdown dialect into a tree. One parser serves one text at a time; one thread only.
class TGMParser {
public:
    explicit TGMParser(const TGMParseOptions& options = {});
    TGMParser(const TGMParser&) = delete;
    TGMParser& operator=(const TGMParser&) = delete;

    // Replaces the tree of an earlier text. `text` is UTF-8 that is never decoded; it ends at its first zero
    // byte, if it has one, and isn't needed after the call. No text at all gives kTgmNullText. After an error
    // the tree holds what was built until then, or is null; callers show nothing of it. The time is linear in
    // the length of the text, whatever it holds: a text that nests deeper than the limits gives
    // kTgmInvalidBlock.
    TGMParseResult parse(std::optional<std::string_view> text);

    // Tells the translator the size of the work, then visits the tree. Does nothing without a tree.
    void walk(TGMTranslator& translator) const;

    // The tree; null before a parse and when there was nothing to parse.
    const TGMNode* getRoot() const { return root_.get(); }

private:
    TGMParseResult parseWhole(std::string_view text);

    TGMParseOptions options_;
    std::unique_ptr<TGMTree> tree_;
    TGMNodePtr root_;  // in the memory of tree_
    std::size_t workSize_ = 0;
};
