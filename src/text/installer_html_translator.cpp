#include "text/installer_html_translator.h"

#include <string>

namespace {

constexpr std::uint8_t kSizes = 10;
constexpr int kColourDigits = 6;

// "#" and six hexadecimal digits.
std::string colourText(std::uint32_t colour) {
    std::string text = "#";
    for (int digit = kColourDigits - 1; digit >= 0; --digit) {
        text += "0123456789abcdef"[(colour >> (4 * digit)) & 0xF];
    }
    return text;
}

}  // namespace

InstallerHTMLTranslator::InstallerHTMLTranslator(const InstallerHTMLSettings& settings)
    : BasicHTMLTranslator(settings.html), settings_(settings) {}

void InstallerHTMLTranslator::beginDocument() {
    BasicHTMLTranslator::beginDocument();
    if (!settings_.useColour && !settings_.useSize) {
        return;
    }
    append("<font");
    if (settings_.useColour) {
        append(" color=\"" + colourText(settings_.colour) + "\"");
    }
    if (settings_.useSize) {
        settings_.size = settings_.size % kSizes;
        append(" size=\"" + std::to_string(settings_.size) + "\"");
    }
    append(">");
    newline();
}

void InstallerHTMLTranslator::endDocument() {
    if (settings_.useColour) {
        newline();
        append("</font>");
    }
    BasicHTMLTranslator::endDocument();
}
