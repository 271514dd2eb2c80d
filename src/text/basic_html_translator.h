#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "text/tgm_translator.h"
#include "text/translator_settings.h"

// Writes a text as an HTML document. The output is complete after endDocument; beginDocument starts a new
// one.
class BasicHTMLTranslator : public TGMTranslator {
public:
    explicit BasicHTMLTranslator(const HTMLSettings& settings = {});

    void beginDocument() override;
    void endDocument() override;
    void beginHeader(int level) override;
    void endHeader(int level) override;
    void beginList(TGMListKind kind) override;
    void endList(TGMListKind kind) override;
    void beginItem() override;
    void endItem() override;
    void beginBold() override;
    void endBold() override;
    void beginItalic() override;
    void endItalic() override;
    void beginQuote() override;
    void endQuote() override;
    void beginParagraph() override;
    void endParagraph() override;
    void beginComposite() override {}
    void endComposite() override {}
    void text(std::string_view bytes) override;
    void reserve(std::size_t size) override;

    // A copy of the output.
    virtual std::string getResult() const;
    // Moves the output out; nothing of it is left here.
    std::string takeResult() { return std::move(out_); }
    // The output; valid until the next event and as long as the translator lives.
    virtual std::string_view getText() const;

protected:
    void append(std::string_view text) { out_ += text; }
    void newline();

private:
    struct Row;

    void flush();
    void indentBlock();
    void appendRow(const Row& row);
    void appendHead();

    bool pendingNewline_ = false;  // an item has begun and nothing has ended its line yet
    std::int32_t depth_ = 0;
    const HTMLSettings settings_;
    std::string out_;
};
