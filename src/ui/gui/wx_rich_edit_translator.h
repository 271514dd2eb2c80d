#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/list_stack.h"
#include "text/tgm_translator.h"
#include "text/translator_settings.h"
#include "ui/gui/rich_text_commands.h"

// Fills a rich text control with a markdown text.
class WxRichEditTranslator : public TGMTranslator {
public:
    // `commands` is borrowed; it is complete after endDocument. The colour of the settings is 0x00BBGGRR.
    explicit WxRichEditTranslator(RichTextCommands& commands, const RichEditSettings& settings = {});

    void beginDocument() override;
    void endDocument() override;
    void beginHeader(int level) override;
    void endHeader(int level) override;
    void beginList(TGMListKind kind) override;
    void endList(TGMListKind kind) override;
    void beginItem() override;
    void endItem() override;
    void beginBold() override;
    void endBold() override { endEmphasis(); }
    void beginItalic() override;
    void endItalic() override { endEmphasis(); }
    // A quote has no mark of its own here.
    void beginQuote() override {}
    void endQuote() override {}
    void beginParagraph() override;
    void endParagraph() override;
    void beginComposite() override {}
    void endComposite() override {}
    void text(std::string_view bytes) override;
    void reserve(std::size_t size) override;

private:
    void flush(bool asParagraph);
    void endEmphasis();
    void beginColour();
    void indentItem();

    RichTextCommands& commands_;
    const RichEditSettings settings_;
    ListStack lists_;
    std::string buffer_;
    bool needParagraph_ = false;  // the next text starts a new one
    std::int64_t currentIndent_ = 0;
};
