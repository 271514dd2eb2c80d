#include "ui/gui/document_content.h"

#include "base/text_functions.h"
#include "base/utf8_character.h"
#include "text/document_text.h"
#include "text/installer_html_translator.h"
#include "text/installer_plain_text_translator.h"
#include "text/rtf_reader.h"
#include "text/verbatim_text.h"
#include "ui/gui/wx_rich_edit_translator.h"
#include "ui/gui/wx_rtf_callback.h"

namespace {

constexpr std::uint8_t kHtmlTextSize = 2;
constexpr std::uint32_t kPlainLevelIndent = 2;

std::string_view upToZero(std::string_view document) {
    return document.substr(0, document.find('\0'));
}

std::int32_t textColour(const DocumentColours& colours) {
    return colours.element != -1 ? colours.element : colours.theme;
}

RichEditSettings richEditSettings(std::int32_t colour) {
    RichEditSettings settings;
    settings.useColour = colour != -1;
    settings.colour = settings.useColour ? static_cast<std::uint32_t>(colour) : 0;
    return settings;
}

InstallerHTMLSettings htmlSettings(std::int32_t colour) {
    InstallerHTMLSettings settings;
    settings.html.indent = false;
    settings.html.newlines = false;
    settings.useSize = true;
    settings.size = kHtmlTextSize;
    settings.useColour = colour != -1;
    settings.colour = settings.useColour ? htmlColour(colour) : 0;
    return settings;
}

std::string markdownPage(std::string_view document, std::int32_t colour) {
    InstallerHTMLTranslator translator(htmlSettings(colour));
    return walkMarkdown(document, translator) ? translator.takeResult() : std::string();
}

// Puts `by` in place of a tag that is written in one case throughout. One pass, so what it puts in stays.
std::string withTagReplaced(std::string_view page, std::string_view lower, std::string_view upper,
                            std::string_view by) {
    std::string result;
    result.reserve(page.size() + by.size());
    while (!page.empty()) {
        const bool isTag = page.starts_with(lower) || page.starts_with(upper);
        result += isTag ? by : page.substr(0, 1);
        page.remove_prefix(isTag ? lower.size() : 1);
    }
    return result;
}

// A body whose tag has attributes is left alone: its author chose colours.
std::string colouredPage(std::string_view page, std::int32_t colour) {
    const auto digits = static_cast<unsigned>(htmlColour(colour));
    const std::string begin = OUtils::formatText("<body><font color=\"#%06x\">", digits);
    return withTagReplaced(withTagReplaced(page, "<body>", "<BODY>", begin), "</body>", "</BODY>",
                           "</font></body>");
}

std::string verbatimContent(std::string_view document) {
    std::string content;
    for (const std::string& line : verbatimLines(document)) {
        content += line + "\n";
    }
    return content;
}

// The control breaks lines at blanks but not at the others, and drops blanks only where there are several.
std::string htmlOfLine(std::string_view line) {
    constexpr std::string_view kMarkup = "&<>\"";
    constexpr std::string_view kEscapes[] = {"&amp;", "&lt;", "&gt;", "&quot;"};
    std::string html;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const std::size_t mark = kMarkup.find(line[at]);
        if (mark != std::string_view::npos) {
            html += kEscapes[mark];
        } else if (line[at] == ' ' && (at == 0 || line.substr(at + 1).starts_with(' '))) {
            html += "&nbsp;";
        } else {
            html += line[at];
        }
    }
    return html;
}

std::string verbatimPage(std::string_view document, std::int32_t colour) {
    const std::string colourOfText =
        colour == -1 ? "" : OUtils::formatText(" color=\"#%06x\"", static_cast<unsigned>(htmlColour(colour)));
    std::string page =
        "<html><body><font" + colourOfText + " size=\"" + std::to_string(kHtmlTextSize) + "\">";
    for (const std::string& line : verbatimLines(document)) {
        page += htmlOfLine(line) + "<br>";
    }
    return page + "</font></body></html>";
}

RichTextCommands verbatimCommands(std::string_view document, std::int32_t colour) {
    RichTextCommands commands;
    if (colour != -1) {
        commands.begin(RichTextCommand::Kind::kBeginTextColour, colour);
    }
    commands.write(verbatimContent(document));
    return commands;
}

std::string withoutCarriageReturns(std::string_view text) {
    std::string result(text);
    std::erase(result, '\r');
    return result;
}

}  // namespace

std::uint32_t htmlColour(std::int32_t colour) {
    const auto bits = static_cast<std::uint32_t>(colour);
    return (bits & 0xFF) << 16 | (bits & 0xFF00) | (bits >> 16 & 0xFF);
}

RichTextCommands richTextContent(std::string_view document, std::string_view format,
                                 const DocumentColours& colours) {
    const DocumentFormat kind = documentFormat(format);
    if (kind == DocumentFormat::kVerbatim) {
        return verbatimCommands(document, textColour(colours));
    }
    RichTextCommands commands;
    if (kind == DocumentFormat::kMarkdown) {
        WxRichEditTranslator translator(commands, richEditSettings(textColour(colours)));
        walkMarkdown(document, translator);
        return commands;
    }
    wxRTFCallback callback(commands, colours.theme);
    RtfReader reader;
    reader.setCallback(&callback);
    if (!reader.read(document, RtfMode::kControl, 0)) {
        commands.clear();
    }
    return commands;
}

std::string htmlContent(std::string_view document, std::string_view format, const DocumentColours& colours) {
    const DocumentFormat kind = documentFormat(format);
    if (kind == DocumentFormat::kVerbatim) {
        return verbatimPage(document, textColour(colours));
    }
    if (kind == DocumentFormat::kMarkdown) {
        return OUtils::validUtf8(markdownPage(document, textColour(colours)));
    }
    const std::string_view page = upToZero(document);
    return OUtils::validUtf8(colours.theme == -1 ? std::string(page) : colouredPage(page, colours.theme));
}

std::string plainTextContent(std::string_view document, std::string_view format) {
    const DocumentFormat kind = documentFormat(format);
    if (kind == DocumentFormat::kVerbatim) {
        return verbatimContent(document);
    }
    if (kind == DocumentFormat::kOfElement) {
        return OUtils::validUtf8(withoutCarriageReturns(upToZero(document)));
    }
    PlainTextSettings settings;
    settings.fillChar = ' ';
    settings.levelIndent = kPlainLevelIndent;
    InstallerPlainTextTranslator translator(settings);
    walkMarkdown(document, translator);
    return OUtils::validUtf8(translator.takeResult());
}
