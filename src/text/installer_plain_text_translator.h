#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "text/list_stack.h"
#include "text/tgm_translator.h"
#include "text/translator_settings.h"

// Writes a text for a console: wraps and justifies lines, writes the markers of lists, and shows emphasis as
// a terminal's bold if the settings ask for it.
class InstallerPlainTextTranslator : public TGMTranslator {
public:
    // The levels of a list indent it by at most this many fill characters, so that a text that nests deeply
    // can't blow up the output.
    static constexpr std::size_t kLargestLevelIndent = 128;

    explicit InstallerPlainTextTranslator(const PlainTextSettings& settings = {});

    void beginDocument() override {}
    void endDocument() override {}
    void beginHeader(int level) override;
    void endHeader(int level) override;
    void beginList(TGMListKind kind) override;
    void endList(TGMListKind kind) override;
    void beginItem() override;
    void endItem() override;
    void beginBold() override { beginEmphasis(boldDepth_); }
    void endBold() override { endEmphasis(boldDepth_); }
    // A console has no italics, so they are shown as bold.
    void beginItalic() override { beginEmphasis(italicDepth_); }
    void endItalic() override { endEmphasis(italicDepth_); }
    void beginQuote() override;
    // A quote has no mark of its own here.
    void endQuote() override {}
    void beginParagraph() override;
    void endParagraph() override;
    void beginComposite() override { enter(compositeDepth_); }
    void endComposite() override { leave(compositeDepth_); }
    void text(std::string_view bytes) override;
    void reserve(std::size_t size) override;

    // A copy of the output.
    virtual std::string getResult() const;
    // Moves the output out; nothing of it is left here.
    std::string takeResult() { return std::move(out_); }
    // The output; valid until the next event and as long as the translator lives.
    virtual std::string_view getText() const;

private:
    bool isInGroup() const;
    void enter(std::uint8_t& counter);
    void leave(std::uint8_t& counter);
    void beginEmphasis(std::uint8_t& counter);
    void endEmphasis(std::uint8_t& counter);
    std::string& emphasisOutput() { return settings_.collectInline ? inline_ : out_; }
    std::size_t levelIndent() const;

    // While one of these counters is above 0, texts are collected in inline_.
    std::uint8_t paragraphDepth_ = 0;
    std::uint8_t compositeDepth_ = 0;
    std::uint8_t boldDepth_ = 0;
    std::uint8_t italicDepth_ = 0;
    const PlainTextSettings settings_;
    ListStack lists_;
    std::string out_;
    std::string inline_;
    bool firstLine_ = false;  // the next line follows the marker of its item
    bool textSeen_ = false;   // the item already has a text
};
