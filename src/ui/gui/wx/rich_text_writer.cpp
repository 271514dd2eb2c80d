#include "ui/gui/wx/rich_text_writer.h"

#include "ui/gui/wx/conversion.h"

namespace {

wxTextAttrAlignment alignmentOf(int value) {
    switch (value) {
        case 1:
            return wxTEXT_ALIGNMENT_CENTRE;
        case 2:
            return wxTEXT_ALIGNMENT_RIGHT;
        case 3:
            return wxTEXT_ALIGNMENT_JUSTIFIED;
        default:
            return wxTEXT_ALIGNMENT_LEFT;
    }
}

class RichTextWriter {
public:
    explicit RichTextWriter(wxRichTextCtrl& document) : document_(document) {}

    void carryOut(const RichTextCommand& command) {
        using Kind = RichTextCommand::Kind;
        switch (command.kind) {
            case Kind::kWrite:
                write([&] {
                    document_.WriteText(wideText(command.text));
                    styleParagraph();
                });
                break;
            case Kind::kAddParagraph:
                write([&] { document_.AddParagraph(wideText(command.text)); });
                break;
            case Kind::kSetPointSize:
                pointSize_ = command.value;
                break;
            case Kind::kEndStyle:
                endStyle();
                break;
            default:
                beginStyle(command);
        }
    }

    void endStyles() {
        while (openStyles_ > 0) {
            endStyle();
        }
    }

private:
    void beginStyle(const RichTextCommand& command) {
        using Kind = RichTextCommand::Kind;
        wxRichTextAttr style;
        switch (command.kind) {
            case Kind::kBeginBold:
                style.SetFontWeight(wxFONTWEIGHT_BOLD);
                break;
            case Kind::kBeginItalic:
                style.SetFontStyle(wxFONTSTYLE_ITALIC);
                break;
            case Kind::kBeginUnderline:
                style.SetFontUnderlined(true);
                break;
            case Kind::kBeginAlignment:
                style.SetAlignment(alignmentOf(command.value));
                break;
            case Kind::kBeginTextColour:
                style.SetTextColour(colourOf(command.value));
                break;
            default:
                style.SetLeftIndent(command.value);
        }
        document_.BeginStyle(style);
        ++openStyles_;
    }

    void endStyle() {
        if (openStyles_ > 0) {
            document_.EndStyle();
            --openStyles_;
        }
    }

    // Written text joins a paragraph that was there before the styles of paragraphs were opened.
    void styleParagraph() {
        wxRichTextBuffer& buffer = document_.GetBuffer();
        wxRichTextParagraph* const paragraph = buffer.GetParagraphAtPosition(document_.GetLastPosition() - 1);
        if (paragraph == nullptr) {
            return;
        }
        const wxRichTextAttr& style = buffer.GetDefaultStyle();
        if (style.HasAlignment()) {
            paragraph->GetAttributes().SetAlignment(style.GetAlignment());
        }
        if (style.HasLeftIndent()) {
            paragraph->GetAttributes().SetLeftIndent(style.GetLeftIndent(), style.GetLeftSubIndent());
        }
    }

    // The control takes the style at its new insertion point for the open ones, so these are set again.
    void moveToEnd() {
        const wxRichTextAttr style = document_.GetBuffer().GetDefaultStyle();
        document_.SetInsertionPointEnd();
        document_.GetBuffer().SetDefaultStyle(style);
    }

    // The size is no style of those that are opened and closed, so it is opened around each piece of text.
    template <typename Write>
    void write(Write writeText) {
        if (pointSize_ > 0) {
            document_.BeginFontSize(pointSize_);
        }
        moveToEnd();
        writeText();
        moveToEnd();
        if (pointSize_ > 0) {
            document_.EndFontSize();
        }
    }

    wxRichTextCtrl& document_;
    int pointSize_ = 0;
    int openStyles_ = 0;
};

}  // namespace

void writeRichText(wxRichTextCtrl& document, std::span<const RichTextCommand> commands) {
    document.BeginSuppressUndo();
    document.Clear();
    RichTextWriter writer(document);
    for (const RichTextCommand& command : commands) {
        writer.carryOut(command);
    }
    writer.endStyles();
    document.EndSuppressUndo();
    document.SetInsertionPoint(0);
    document.ShowPosition(0);
}
