#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

enum TGMListKind : std::uint32_t {
    kTgmBulletList = 0,
    kTgmNumberList = 1,
    kTgmLetterList = 2,
};

// Receives the tree of a text as a stream of events. One translator serves one walk: reserve comes first,
// beginDocument and endDocument enclose everything else, and each begin has its end.
class TGMTranslator {
public:
    TGMTranslator() = default;
    TGMTranslator(const TGMTranslator&) = delete;
    TGMTranslator& operator=(const TGMTranslator&) = delete;
    virtual ~TGMTranslator() = default;

    virtual void beginDocument() = 0;
    virtual void endDocument() = 0;
    virtual void beginHeader(int level) = 0;  // 1 to 6
    virtual void endHeader(int level) = 0;
    virtual void beginList(TGMListKind kind) = 0;
    virtual void endList(TGMListKind kind) = 0;
    virtual void beginItem() = 0;
    virtual void endItem() = 0;
    virtual void beginBold() = 0;
    virtual void endBold() = 0;
    virtual void beginItalic() = 0;
    virtual void endItalic() = 0;
    virtual void beginQuote() = 0;
    virtual void endQuote() = 0;
    virtual void beginParagraph() = 0;
    virtual void endParagraph() = 0;
    virtual void beginComposite() = 0;
    virtual void endComposite() = 0;
    // The text of a node, after its begin and before its children. Never empty. It has line feeds only if the
    // parser joins lines by them. Valid during the call.
    virtual void text(std::string_view bytes) = 0;
    // The size of the parser's work in bytes, which is about how much text will come.
    virtual void reserve(std::size_t size) = 0;
};
