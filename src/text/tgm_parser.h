#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "text/tgm_node.h"
#include "text/tgm_parse_options.h"

class TGMTranslator;
class TGMTree;

// Reads a text of the markdown dialect into a tree. One parser serves one text at a time; one thread only.
class TGMParser {
public:
    explicit TGMParser(const TGMParseOptions& options = {});
    ~TGMParser();
    TGMParser(const TGMParser&) = delete;
    TGMParser& operator=(const TGMParser&) = delete;

    // Replaces the tree of an earlier text. `text` is zero-terminated UTF-8 that is never decoded; null gives
    // kTgmNullText. After an error the tree holds what was built until then, or nothing; callers show nothing
    // of it. The time is linear in the length of the text, whatever it holds: a text that nests deeper than
    // the limits gives kTgmInvalidBlock.
    void parse(TGMParseResult& result, const char* text);
    // The same for a text that ends at its first zero byte, or without one. It isn't needed after the call.
    void parse(TGMParseResult& result, std::string_view text);

    // Tells the translator the size of the work, then visits the tree. Nothing happens without a tree.
    void walk(TGMTranslator& translator) const;

    // The tree; null before a parse and when there was nothing to parse.
    const TGMNode* getRoot() const { return root_.get(); }

private:
    void reset(TGMParseResult& result);

    TGMParseOptions options_;
    std::unique_ptr<TGMTree> tree_;
    TGMNodePtr root_;  // in the memory of tree_
    std::size_t workSize_ = 0;
};
