#include "text/tgm_line_parser.h"

#include "text/tgm_block_end.h"
#include "text/tgm_dump.h"
#include "text/tgm_finalizer.h"
#include "text/utf8_check.h"

namespace {

void logLines(const std::vector<TGMLine>& lines, const TGMParseOptions& options, const TGMParseScope& scope,
              TGMParseResult& result) {
    const auto ends = findAllTgmBlockEnds(lines, options.lazyLists, scope.budget);
    if (ends.size() < lines.size()) {
        result.add(kTgmInvalidBlock, scope.firstLine + static_cast<std::uint32_t>(ends.size()));
        return;
    }
    for (std::size_t index = 0; index < lines.size(); ++index) {
        dumpTgmLine(*options.debugLog, index, lines[index], ends[index]);
    }
}

void logTree(const TGMNode& root, const char* title, const TGMParseOptions& options) {
    if (options.debugLog != nullptr) {
        *options.debugLog += title;
        dumpTgmTree(*options.debugLog, root);
        *options.debugLog += "\n\n";
    }
}

void checkLines(const std::vector<TGMLine>& lines, const TGMParseScope& scope, TGMParseResult& result) {
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::string_view text = lines[index].text();
        const auto line = scope.firstLine + static_cast<std::uint32_t>(index);
        if (!scope.budget.spend(text.size())) {
            result.add(kTgmInvalidBlock, line);
            return;
        }
        if (const auto character = findInvalidUtf8(text)) {
            result.add(kTgmInvalidUtf8, line, static_cast<std::uint32_t>(*character));
            return;
        }
    }
}

}  // namespace

TGMNodePtr parseTgmLines(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                         const TGMParseScope& scope, TGMParseResult& result) {
    TGMParseResult own;
    if (options.debugLog != nullptr) {
        logLines(lines, options, scope, own);
    }
    if (options.checkUtf8) {
        checkLines(lines, scope, own);
    }
    TGMNodePtr root = scope.tree.makeNode(kTgmDocument);
    if (own.succeeded() || options.keepGoing) {
        TGMBlockBuilder(lines, options, scope, own, parseTgmLines).build(*root);
    }
    logTree(*root, "\n\n============ Topology Tree: ============\n\n", options);
    if (own.succeeded() || options.keepGoing) {
        own.merge(finalizeTgmNode(*root, scope.depth, scope.tree, scope.budget));
    }
    logTree(*root, "\n\n============ Finalized Tree: ============\n\n", options);
    result.merge(own);
    return root;
}
